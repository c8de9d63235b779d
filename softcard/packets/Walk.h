#ifndef SOFTCARD_PACKETS_WALK_H
#define SOFTCARD_PACKETS_WALK_H

#include <optional>

#include "softcard/packets/Rewrite.h"
#include "softcard/packets/Story.h"
#include "softcard/packets/Way.h"

namespace softcard {

/// One packet on its way: Arrival.cpp brings it from the wire to a destination, Departure.cpp from there to the wire.
class Walk {
 public:
  Walk(const Tables& tables, const Records& records, View arrived, Bytes* out, Story* story)
      : tables_(tables), records_(records), arrived_(arrived), out_(*out), story_(story) {}

  Way FromWire(int port);
  Way ToDestination(unsigned destination, const Packet& packet);

  /// Ends the way; the reason is put into words only when somebody listens.
  template <typename Reason>
  Way Dropped(Drop drop, const Reason& reason) {
    out_.clear();
    if (story_) story_->Tell(DroppedStep{drop, reason()});
    way_.drop = drop;
    return way_;
  }
  Way Malformed(const char* reason) {
    return Dropped(Drop::kMalformed, [&] { return reason; });
  }

 private:
  bool IsMyStation(unsigned vlan_id, const unsigned char* mac);
  Way Routed(unsigned vrf, const std::optional<Packet>& ip, unsigned ttl);
  Way Labelled(unsigned vlan_vrf, View stack);
  Way Unwrapped(int port, View frame, unsigned ttl);

  Way Encapsulated(const Egress& egress, const IntfObject& object, Packet packet);
  PushedLabels LabelsFor(const Egress& egress, const LabelStack* initiator, const Packet& packet) const;
  Way ToCpu(int egress_id);
  Way NoPort(int port);
  /// The port itself, of a LAG with members the one for the packet's flow; nothing for a port that does not exist.
  std::optional<int> FindPort(int port, const Packet& packet);
  Way Sent(int port);

  const Tables& tables_;
  const Records& records_;
  const View arrived_;
  Bytes& out_;
  Story* const story_;
  Way way_;
  unsigned hops_ = 0;         ///< 1 when the card routes the packet or looks at its labels
  bool takes_label_ = false;  ///< the outermost label was for this card
};

}  // namespace softcard

#endif
