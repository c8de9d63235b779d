#ifndef HAL_L3_MPLS_ENCAPSULATION_PRINTABLE_H
#define HAL_L3_MPLS_ENCAPSULATION_PRINTABLE_H

#include <cstddef>
#include <cstring>
#include <string>

#include "hal/limid.h"

/// The texts by which log lines name things.
class HalL3MplsEncapsulationPrintable {
 public:
  virtual ~HalL3MplsEncapsulationPrintable();

  /// The object in words; `deep`: with the resources it manages.
  virtual std::string ToString(bool deep) const = 0;

  /// "0x" and the `count` lowest hexadecimal digits of `value`, upper case.
  template <typename T>
  std::string ToHexString(T value, unsigned int count) const {
    std::string text(count + 2UL, 'x');
    text[0] = '0';
    WriteHexDigits(&text[2], value, count);
    return text;
  }

  /// "lim id(name=eth0, type=0x01, value=0x00002A)"; the value is the low 24 bits of the interface index. What the
  /// platform cannot decode shows as 0 or empty.
  std::string PrintLimId(limid_t limid) const {
    unsigned char type = 0;
    limid_to_type(limid, &type);
    unsigned int value = 0;
    limid_to_ifindex(limid, &value);
    char name[64] = {};
    limid_to_intfname(limid, name, sizeof(name));

    // Put together in place: only the string that is returned allocates.
    char text[sizeof("lim id(name=, type=0x00, value=0x000000)") + sizeof(name)];
    char* end = Write(text, "lim id(name=");
    const std::size_t length = std::strlen(name);
    std::memcpy(end, name, length);
    end = WriteHexDigits(Write(end + length, ", type=0x"), type, 2);
    end = WriteHexDigits(Write(end, ", value=0x"), value, 6);
    return std::string(text, Write(end, ")"));
  }

 private:
  // Both return the end of what they write, which is not terminated.

  template <std::size_t N>
  static char* Write(char* text, const char (&literal)[N]) {
    std::memcpy(text, literal, N - 1);
    return text + N - 1;
  }

  template <typename T>
  static char* WriteHexDigits(char* text, T value, unsigned int count) {
    static const char* const digits = "0123456789ABCDEF";
    for (char* place = text + count; place != text; value >>= 4) {
      *--place = digits[value & 0xF];
    }
    return text + count;
  }
};

#endif
