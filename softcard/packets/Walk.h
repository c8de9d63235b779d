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
  /// `way`: what becomes of the packet, once it has gone.
  Walk(const Tables& tables, const Records& records, View arrived, Bytes* out, Way* way, Story* story)
      : tables_(tables), records_(records), arrived_(arrived), out_(*out), way_(*way), story_(story) {}

  void FromWire(int port);
  void ToDestination(unsigned destination, Packet& packet);

  /// Ends the way; the reason is put into words only when somebody listens.
  template <typename Reason>
  void Dropped(Drop drop, const Reason& reason) {
    out_.clear();
    if (told()) story_->Tell(DroppedStep{drop, reason()});
    way_.drop = drop;
  }
  void Malformed(const char* reason) {
    Dropped(Drop::kMalformed, [&] { return reason; });
  }

 private:
  /// Whether somebody listens. Compilers take pointers for mostly set, and would let what is told stand in the way.
  bool told() const { return __builtin_expect(story_ != nullptr, 0) != 0; }

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
  int FindMember(int lag, const Packet& packet);
  void Sent(int port);

  const Tables& tables_;
  const Records& records_;
  const View arrived_;
  Bytes& out_;
  Way& way_;
  Story* const story_;
  unsigned hops_ = 0;         ///< 1 when the card routes the packet or looks at its labels
  bool takes_label_ = false;  ///< the outermost label was for this card
};

}  // namespace softcard

#endif
