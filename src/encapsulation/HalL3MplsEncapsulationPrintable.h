#ifndef HAL_L3_MPLS_ENCAPSULATION_PRINTABLE_H
#define HAL_L3_MPLS_ENCAPSULATION_PRINTABLE_H

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
    static const char* const digits = "0123456789ABCDEF";
    std::string text(count + 2UL, '0');
    text[1] = 'x';
    for (unsigned int i = 0; i < count; ++i) {
      const unsigned int nibble = count - 1 - i;
      // A shift by the width of the value or more is not defined: digits beyond it stay 0.
      if (nibble < 2 * sizeof(T)) {
        text[2UL + i] = digits[(value >> (4 * nibble)) & 0xF];
      }
    }
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

    std::string text;
    text.reserve(sizeof("lim id(name=, type=0x00, value=0x000000)") + sizeof(name));
    text += "lim id(name=";
    text += name;
    text += ", type=";
    text += ToHexString<unsigned char>(type, 2);
    text += ", value=";
    text += ToHexString<unsigned int>(value & 0xFFFFFF, 6);
    text += ")";
    return text;
  }
};

#endif
