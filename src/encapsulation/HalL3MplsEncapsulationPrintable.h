#ifndef HAL_L3_MPLS_ENCAPSULATION_PRINTABLE_H
#define HAL_L3_MPLS_ENCAPSULATION_PRINTABLE_H

#include <string>

#include "LogText.h"
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
  std::string PrintLimId(limid_t limid) const { return LimIdText(limid).c_str(); }
};

#endif
