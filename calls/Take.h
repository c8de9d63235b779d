#ifndef CALLS_TAKE_H
#define CALLS_TAKE_H

#include <string_view>

namespace calls {

/// Takes `start` from the beginning of the text; whether it was there.
inline bool Take(std::string_view* text, std::string_view start) {
  if (text->substr(0, start.size()) != start) return false;
  text->remove_prefix(start.size());
  return true;
}

}  // namespace calls

#endif
