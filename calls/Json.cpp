#include "calls/Json.h"

#include <cstddef>

namespace calls {
namespace {

/// How many bytes the UTF-8 character at the beginning of `text` has; 0 when there is none.
std::size_t CharacterSize(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < size) return 0;
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  // Longer than needed, a half of a UTF-16 pair, or beyond the last character.
  const unsigned second = byte(1);
  const bool valid = (first != 0xE0 || second >= 0xA0) && (first != 0xED || second < 0xA0) &&
                     (first != 0xF0 || second >= 0x90) && (first != 0xF4 || second < 0x90);
  return valid ? size : 0;
}

}  // namespace

std::string JsonString(std::string_view text) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string json = "\"";
  while (!text.empty()) {
    const std::size_t size = CharacterSize(text);
    const char c = text[0];
    if (size == 0) {
      json += "\xEF\xBF\xBD";
    } else if (c == '"' || c == '\\') {
      json += '\\';
      json += c;
    } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
      json += "\\u00";
      json += kDigits[c >> 4];
      json += kDigits[c & 0xF];
    } else {
      json += text.substr(0, size);
    }
    text.remove_prefix(size == 0 ? 1 : size);
  }
  return json + '"';
}

}  // namespace calls
