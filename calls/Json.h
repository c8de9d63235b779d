#ifndef CALLS_JSON_H
#define CALLS_JSON_H

#include <string>
#include <string_view>

namespace calls {

/// A JSON string with its quotes. Bytes that are no UTF-8 become U+FFFD.
std::string JsonString(std::string_view text);

}  // namespace calls

#endif
