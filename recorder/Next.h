#ifndef RECORDER_NEXT_H
#define RECORDER_NEXT_H

#include "calls/Functions.h"

/// What the dynamic linker would have found without us: the definitions of the libraries that come after this one.
namespace recorder {

constexpr int kFunctionCount = static_cast<int>(sizeof calls::kFunctions / sizeof calls::kFunctions[0]);

/// A platform function by its place among the descriptions; null while no library behind this one defines it.
extern void* the_next[kFunctionCount];

/// The same for a call that is under way, found when the platform's library came late. Without it there is no call to
/// make: the process ends, with the function's name, as it would without us.
void* NextOf(int index);
inline void* Next(int index) { return the_next[index] ? the_next[index] : NextOf(index); }

/// An entry point of the module behind this library.
void* NextEntry(const char* symbol);

/// Looks for all; names on standard error what a platform that is there lacks. Whether it is there and lacks nothing.
bool FindPlatform();

}  // namespace recorder

#endif
