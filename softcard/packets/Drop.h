#ifndef SOFTCARD_PACKETS_DROP_H
#define SOFTCARD_PACKETS_DROP_H

namespace softcard {

/// Why a packet is dropped.
enum class Drop {
  kNotRouted,      ///< no my-station entry matches, or it is nothing that is routed: a switch would bridge it
  kNoRoute,        ///< no prefix of the VRF matches
  kMissingLabel,   ///< the incoming label has no row; an Ethernet frame would leave without a label
  kNoRecord,       ///< the destination is not installed
  kNoEgress,       ///< its egress object does not exist
  kNoInterface,    ///< its egress object is bound to no interface
  kInterfaceGone,  ///< its egress object is bound to an interface that has been deleted
  kMtu,            ///< with its labels it is larger than the interface allows
  kTtl,            ///< it has come as far as it may
  kAction,         ///< the egress object drops
  kNoPort,         ///< the port does not exist
  kMalformed,      ///< its own bytes are at odds with each other
};
constexpr int kDrops = 12;

/// "not-routed": the name in texts, counters and expectations.
const char* DropName(Drop drop);

}  // namespace softcard

#endif
