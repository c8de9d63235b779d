#ifndef TESTS_SOFTCARD_PACKETS_HEX_H
#define TESTS_SOFTCARD_PACKETS_HEX_H

#include <string>

#include "softcard/packets/Frame.h"

/// "45a0 0018" and its like; blanks are for the reader.
inline softcard::Bytes Hex(const std::string& text) {
  softcard::Bytes bytes;
  std::string digits;
  for (const char c : text) {
    if (c != ' ') digits += c;
    if (digits.size() < 2) continue;
    bytes.push_back(static_cast<unsigned char>(std::stoul(digits, nullptr, 16)));
    digits.clear();
  }
  return bytes;
}

#endif
