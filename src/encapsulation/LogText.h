#ifndef ENCAPSULATION_LOG_TEXT_H
#define ENCAPSULATION_LOG_TEXT_H

#include <charconv>
#include <cstddef>
#include <cstring>

#include "HalEncapsulationTypes.h"
#include "hal/limid.h"

/// The levels of the module's log lines.
enum LogLevel : int {
  kFailure = 3,
  kRejected = 4,
  kNotice = 6,
  kProgress = 7,
};

/// Writes the `count` lowest hexadecimal digits of `value`, upper case and not terminated; returns their end.
template <typename T>
char* WriteHexDigits(char* text, T value, unsigned int count) {
  static const char* const digits = "0123456789ABCDEF";
  for (char* place = text + count; place != text; value >>= 4) *--place = digits[value & 0xF];
  return text + count;
}

/// "destination id(12)" and its like, in a buffer of its own: naming an object allocates nothing.
class IdText {
 public:
  template <std::size_t N>
  IdText(const char (&kind)[N], unsigned int id) {
    static_assert(N <= sizeof("destination id("), "the longest kind sizes the buffer");
    std::memcpy(text_, kind, N - 1);
    char* const end = std::to_chars(text_ + N - 1, text_ + sizeof(text_) - 2, id).ptr;
    std::memcpy(end, ")", 2);
  }

  const char* c_str() const { return text_; }

 private:
  char text_[sizeof("destination id(4294967295)")];
};

inline IdText DestinationText(unsigned int destination_id) { return {"destination id(", destination_id}; }
inline IdText VlanText(unsigned int vlan_id) { return {"vlan id(", vlan_id}; }
inline IdText IntfText(int intf_id) { return {"intf id(", static_cast<unsigned int>(intf_id)}; }

/// "lim id(name=eth0, type=0x01, value=0x00002A)", in a buffer of its own, too.
class LimIdText {
 public:
  explicit LimIdText(limid_t limid) {
    unsigned char type = 0;
    limid_to_type(limid, &type);
    unsigned int value = 0;
    limid_to_ifindex(limid, &value);
    char* const name = Write(text_, "lim id(name=");
    std::memset(name, 0, kNameSize + 1);  // one more than the platform may write: the name ends there at the latest
    limid_to_intfname(limid, name, kNameSize);

    // Behind the name's NUL lies what the platform left there: the text goes over it and ends itself.
    char* end = name + std::strlen(name);
    end = WriteHexDigits(Write(end, ", type=0x"), type, 2);
    end = WriteHexDigits(Write(end, ", value=0x"), value, 6);
    std::memcpy(end, ")", 2);
  }

  const char* c_str() const { return text_; }

 private:
  static constexpr std::size_t kNameSize = 64;

  template <std::size_t N>
  static char* Write(char* text, const char (&literal)[N]) {
    std::memcpy(text, literal, N - 1);
    return text + N - 1;
  }

  char text_[sizeof("lim id(name=, type=0x00, value=0x000000)") + kNameSize];
};

/// "MPLS Capability(Push)"; values that are no enumerator are Unknown.
const char* MplsCapabilityText(en_HalMplsCapabilities capability);

#endif
