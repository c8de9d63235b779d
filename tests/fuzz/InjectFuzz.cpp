// Frames of any bytes on a card that has a row for everything: the first byte chooses the port, the rest is the frame.
// What has to hold whatever comes is checked here; what must not happen at all, the sanitizers see.

#include <cstdint>
#include <cstdlib>
#include <iostream>

#include "softcard/packets/Packet.h"
#include "tests/softcard/packets/PacketCard.h"

namespace {

using softcard::Bytes;
using softcard::Way;
using Action = softcard::LabelAction::Kind;

constexpr unsigned int kMtu = 1500;
constexpr std::size_t kMostAdded = 18 + 3 * 4;  // an Ethernet header with its tag, and three labels

void Require(bool held, const char* what, const Bytes& frame) {
  if (held) return;
  std::cerr << what << ": " << Text(frame) << '\n';
  std::abort();
}

struct FullCard : PacketCard {
  FullCard() {
    Route("0.0.0.0", 0, Push({100, 200}));
    Route("10.0.0.0", 8, Push({100, 200}, 16, 2));
    Route("192.0.2.0", 24, 999);
    Route("198.51.100.0", 24, Host(intf, kNoLabel, 0, 1001));
    Route("::", 0, Host());
    Route("2001:db8::", 32, Host(Tunnel({{0, 100, 0, 6, 9}})));
    softcard::Tables& tables = card.tables();
    tables.lags.Set(1001, {5, 6, 7}, tables.ports);
    tables.attachments.Set(2, Vc(17), tables.ports);
    tables.attachments.Set(3, Host(), tables.ports);
    LabelTo(16, Swap(300));
    LabelTo(17, Push({400}, 300, 1));
    LabelTo(18, Host());
    LabelTo(19, Push({100, 200}));
    Label(20, Action::kPopVrf, 1);
    Label(21, Action::kPopPort, 7);
    Label(22, Action::kPopPort, 1001);
  }
};

/// What is inside a frame of a tunnel, and in what has only been routed, is a whole packet again.
void RequireWhole(const Bytes& in, const Bytes& out) {
  const unsigned int type = softcard::Get16(&out[16]);
  const softcard::View packet = softcard::View(out).From(18);
  if (type == softcard::kEtherTypeIpv4) {
    Require(softcard::ParseIpv4(packet).has_value(), "a broken IPv4 packet left", in);
  }
  if (type == softcard::kEtherTypeIpv6) {
    Require(softcard::ParseIpv6(packet).has_value(), "a broken IPv6 packet left", in);
  }
  if (type == softcard::kEtherTypeMpls) Require(softcard::ParseLabelled(packet).has_value(), "a broken stack left", in);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static FullCard& card = *new FullCard;
  if (size == 0) return 0;
  const int port = data[0] % 4;
  const Bytes frame(data + 1, data + size);

  softcard::Prefetch(card.card.tables(), frame);
  const Way way = card.Inject(frame, nullptr, port);
  const Bytes out = card.out;
  softcard::StoryLines story(card.card.tables().ports);
  const Way told = card.Inject(frame, &story, port);
  Require(told.fate == way.fate && told.port == way.port && card.out == out, "the story changed the way", frame);
  Require(story.lines().size() < 32 + frame.size(), "the story is too long", frame);

  Require(out.size() <= frame.size() + kMostAdded, "the frame grew by more than its headers", frame);
  Require(way.fate != Way::Fate::kDropped || out.empty(), "a dropped packet left something", frame);
  const bool encapsulated = way.fate == Way::Fate::kSent && way.destination;
  Require(!encapsulated || out.size() <= 18 + kMtu, "a frame over the MTU left", frame);
  if (encapsulated) RequireWhole(frame, out);
  return 0;
}
