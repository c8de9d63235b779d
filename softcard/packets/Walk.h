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

  void FromWire(int port);
  void ToDestination(unsigned destination, Packet& packet);
  const Way& way() const { return way_; }

  /// Ends the way; the reason is put into words only when somebody listens.
  template <typename Reason>
  void Dropped(Drop drop, const Reason& reason) {
    out_.clear();
    if (story_) story_->Tell(DroppedStep{drop, reason()});
    way_.drop = drop;
  }
  void Malformed(const char* reason) {
    Dropped(Drop::kMalformed, [&] { return reason; });
  }

 private:
  bool IsMyStation(unsigned vlan_id, const unsigned char* mac);
  void Routed(unsigned vrf, std::optional<Packet>&& ip, unsigned ttl);
  void Labelled(unsigned vlan_vrf, View stack);
  void Unwrapped(int port, View frame, unsigned ttl);

  void Encapsulated(const Egress& egress, const Intf& intf, Packet& packet);
  PushedLabels LabelsFor(const Egress& egress, const LabelStack* initiator, const Packet& packet) const;
  void ToCpu(int egress_id);
  void NoPort(int port);
  /// The port itself, of a LAG with members the one for the packet's flow; nothing for a port that does not exist.
  std::optional<int> FindPort(int port, const Packet& packet);
  void Sent(int port);

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
