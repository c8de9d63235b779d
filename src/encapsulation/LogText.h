#ifndef ENCAPSULATION_LOG_TEXT_H
#define ENCAPSULATION_LOG_TEXT_H

#include <charconv>
#include <cstddef>
#include <cstring>

#include "HalEncapsulationTypes.h"

/// The levels of the module's log lines.
enum LogLevel : int {
  kFailure = 3,
  kRejected = 4,
  kNotice = 6,
  kProgress = 7,
};

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

/// "MPLS Capability(Push)"; values that are no enumerator are Unknown.
const char* MplsCapabilityText(en_HalMplsCapabilities capability);

#endif
