#ifndef CALLS_PATTERN_H
#define CALLS_PATTERN_H

#include <string_view>

namespace calls {

/// Whether `text` is what `pattern` says; '*' in the pattern stands for any characters, "\*" for an asterisk and "\\"
/// for a backslash.
bool Matches(std::string_view pattern, std::string_view text);

}  // namespace calls

#endif
