#ifndef SCENARIO_SOURCE_FILE_H
#define SCENARIO_SOURCE_FILE_H

#include <cstddef>
#include <string>

namespace scenario {

/// In bytes, of a scenario with all that it includes.
constexpr std::size_t kMostSource = 64 << 20;

/// All of a file, of standard input for "-". Throws std::runtime_error with the reason and the remedy when it cannot be
/// read or has more than `most` bytes.
std::string ReadFile(const std::string& path, std::size_t most = kMostSource);

}  // namespace scenario

#endif
