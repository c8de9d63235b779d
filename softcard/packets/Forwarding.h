#ifndef SOFTCARD_PACKETS_FORWARDING_H
#define SOFTCARD_PACKETS_FORWARDING_H

#include <string>
#include <vector>

#include "softcard/Tables.h"

namespace softcard {

using Bytes = std::vector<unsigned char>;

constexpr unsigned kEtherTypeIpv4 = 0x0800;
constexpr unsigned kEtherTypeVlan = 0x8100;
constexpr unsigned kEtherTypeIpv6 = 0x86DD;
constexpr unsigned kEtherTypeMpls = 0x8847;

/// What has been routed to an egress object: the bytes that go below the labels to come, and the Ethernet type that
/// says what they are. kEtherTypeMpls: they begin with a label stack, so that no label above them is the bottom.
struct Packet {
  unsigned ether_type;
  Bytes bytes;

  /// An IP packet; its first four bits tell the version.
  static Packet Ip(Bytes bytes);
};

/// What becomes of a packet.
struct Outcome {
  enum class Fate { kSent, kToCpu, kDropped };

  Fate fate;
  std::string reason;              ///< why it is not sent
  std::string port;                ///< "eth3", "lag2", "cpu"; empty when it is dropped
  Bytes frame;                     ///< sent: the Ethernet frame without its check sequence; to the CPU: the packet
  std::vector<std::string> trace;  ///< what was found and done, table by table, in words
};

/// Sends a packet through an egress object. On the wire the labels of the interface's tunnel initiator come first, the
/// last record outermost, then the egress object's own label. EXP and TTL are the packet's own (0 and 255 when it has
/// none), unless a label record sets them: the card's QoS maps copy the EXP. Where several reasons speak against
/// sending, dropping comes before sending to the CPU.
Outcome Forward(const Tables& tables, int egress_id, const Packet& packet);

}  // namespace softcard

#endif
