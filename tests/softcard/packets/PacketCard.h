#ifndef TESTS_SOFTCARD_PACKETS_PACKET_CARD_H
#define TESTS_SOFTCARD_PACKETS_PACKET_CARD_H

#include <deque>
#include <string>
#include <vector>

#include "softcard/Card.h"
#include "softcard/packets/StoryText.h"
#include "softcard/packets/Way.h"
#include "tests/softcard/packets/Hex.h"

std::string Text(const softcard::Bytes& bytes);

/// A card that routes on VLAN 100: VRF 1, my station 00:00:5e:00:01:01, interface `intf`. Destinations get the ids 1, 2
/// ... in the order in which they are made; their next hop is 00:00:5e:00:02:01 behind eth3.
class PacketCard {
 public:
  static constexpr unsigned int kNoLabel = 0xFFFFFFFF;
  static constexpr unsigned int kSetTtl = 0x1;
  static constexpr unsigned int kRemarkExp = 0x10;

  explicit PacketCard(const softcard::CardDescription& description = {});
  ~PacketCard() { card.Reset(); }
  PacketCard(const PacketCard&) = delete;
  PacketCard& operator=(const PacketCard&) = delete;

  /// A destination whose egress object is bound to an interface, and carries a label of its own.
  unsigned int Host(int on_intf, unsigned int label = kNoLabel, int control = 0, int port = 3);
  unsigned int Host() { return Host(intf); }
  unsigned int Swap(unsigned int label) { return Host(intf, label, 1); }
  unsigned int Vc(unsigned int label) { return Host(intf, label, 2); }
  /// A destination whose labels, the innermost first, are pushed with TTL 255 and remarked EXP.
  unsigned int Push(const std::vector<unsigned int>& labels, unsigned int own_label = kNoLabel, int control = 0);
  /// An interface that pushes these records.
  int Tunnel(const std::vector<bcm_mpls_egress_label_t>& records);
  unsigned int Record(int record_intf, int egress);

  void Route(const std::string& prefix, unsigned int length, unsigned int destination, unsigned int vrf = 1);
  void Label(unsigned int label, softcard::LabelAction::Kind kind, unsigned int value);
  void LabelTo(unsigned int label, unsigned int destination) {
    Label(label, softcard::LabelAction::Kind::kDestination, destination);
  }

  softcard::Way Inject(const softcard::Bytes& frame, softcard::Story* story = nullptr, int port = 1);
  softcard::Way Send(unsigned int destination, const softcard::Bytes& packet,
                     softcard::Carried carried = softcard::Carried::kIp, softcard::Story* story = nullptr);
  /// "eth3: 0000..." for a frame that was sent, "cpu: 0000..." or "ttl", the name of the drop.
  std::string Injected(const std::string& frame, int port = 1);
  std::string Sent(unsigned int destination, const std::string& packet,
                   softcard::Carried carried = softcard::Carried::kIp);
  /// The story's lines.
  std::string StoryOf(const std::string& frame, int port = 1);

  softcard::Card& card = softcard::Card::Get();
  int intf = 0;
  softcard::Bytes out;
  softcard::Records records;

 private:
  std::string Text(const softcard::Way& way) const;

  std::deque<DestinationIdCorrelator> correlators_;
};

/// What frames begin with when they come in, and when they leave: addresses and the tag of VLAN 100. The Ethernet type
/// comes next.
inline const std::string kToRouter = "00005e000101 020000000001 81000064 ";
inline const std::string kToNextHop = "00005e000201 00005e000101 81000064 ";
/// 192.0.2.1 to 198.51.100.1, precedence 5, four bytes of payload: as it comes, and as it is sent on.
inline const std::string kIp64 = "45a00018 12340000 40117bcb c0000201 c6336401 deadbeef";
inline const std::string kRouted = kToRouter + "0800 " + kIp64;
inline const std::string kIp63 = "45a00018 12340000 3f117ccb c0000201 c6336401 deadbeef";

#endif
