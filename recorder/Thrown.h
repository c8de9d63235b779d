#ifndef RECORDER_THROWN_H
#define RECORDER_THROWN_H

#include <string>

namespace recorder {

/// Throws what a recording tells: "std::out_of_range: HAL ID not found". A class that the standard library does not
/// have becomes one of our own.
[[noreturn]] void ThrowAgain(const std::string& text);

/// What is being thrown, from inside a catch of a std::exception: as recorded, when ThrowAgain() threw it.
std::string DescribeAgain();

}  // namespace recorder

#endif
