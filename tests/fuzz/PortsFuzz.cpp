// Frames of any bytes that come in on the ports of a living card. The first byte chooses the port and whether there are
// native VLANs and the route processor's sides of ports; the rest is the frame.

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <utility>
#include <vector>

#include "serve/Forwarder.h"
#include "tests/fuzz/FullCard.h"

namespace {

using softcard::Bytes;
using softcard::View;

constexpr unsigned kNative = 100;
constexpr std::size_t kMacs = 12;

struct Wires : serve::Forwarder::Wires {
  bool HasHost(int) const override { return has_hosts; }
  void ToHost(int port, View frame) override { to_host.emplace_back(port, Bytes(frame.data, frame.data + frame.size)); }
  void ToPort(int port, View frame) override { to_port.emplace_back(port, Bytes(frame.data, frame.data + frame.size)); }

  bool has_hosts = false;
  std::vector<std::pair<int, Bytes>> to_host;
  std::vector<std::pair<int, Bytes>> to_port;
};

void Require(bool held, const char* what, const Bytes& frame) {
  if (held) return;
  std::cerr << what << ": " << Text(frame) << '\n';
  std::abort();
}

bool HasTag(const Bytes& frame) {
  return frame.size() >= softcard::kEthernetBytes + softcard::kTagBytes &&
         softcard::Get16(&frame[kMacs]) == softcard::kEtherTypeVlan;
}

Bytes WithTag(Bytes frame) {
  const unsigned char tag[] = {softcard::kEtherTypeVlan >> 8, softcard::kEtherTypeVlan & 0xFF, 0, kNative};
  frame.insert(frame.begin() + kMacs, tag, tag + sizeof tag);
  return frame;
}

Bytes WithoutTag(Bytes frame) {
  frame.erase(frame.begin() + kMacs, frame.begin() + kMacs + softcard::kTagBytes);
  return frame;
}

/// The library's records are those of the card.
FullCard& LivingCard() {
  auto* const card = new FullCard;
  card->card.common().destination_id_correlators.insert(card->records.begin(), card->records.end());
  return *card;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static FullCard& card = LivingCard();
  if (size == 0) return 0;
  const int port = data[0] % 4 == 0 ? 4 : data[0] % 4;
  const bool has_natives = (data[0] & 4) != 0;
  const Bytes frame(data + 1, data + size);
  serve::Living living;
  serve::Natives& natives = living.natives;
  if (has_natives) natives = {{1, kNative}, {2, kNative}, {3, kNative}, {5, kNative}, {6, kNative}, {7, kNative}};
  Wires wires;
  wires.has_hosts = (data[0] & 8) != 0;
  serve::Forwarder forwarder(card.card, living, wires);
  card.card.counters() = {};
  const auto attached = [&](int of) { return card.card.tables().attachments.Find(of) != nullptr; };

  forwarder.Came(port, frame);

  Require(card.card.counters().in(port).packets == 1, "a frame is not counted once", frame);
  Require(wires.to_host.size() + wires.to_port.size() <= 1, "a frame left twice", frame);
  for (const auto& [of, bytes] : wires.to_host) {
    Require(wires.has_hosts && !attached(port), "a frame went to a side that nobody has", frame);
    Require(of == port && bytes == frame, "the processor gets another frame than the one that came", frame);
  }
  // What takes the card's way leaves as the card would send it, but for the tag of a native VLAN.
  const bool untagged = has_natives && natives.count(port) != 0 && !attached(port) && !HasTag(frame) &&
                        frame.size() >= softcard::kEthernetBytes;
  const softcard::Way way = card.Inject(untagged ? WithTag(frame) : frame, nullptr, port);
  const bool sent = way.fate == softcard::Way::Fate::kSent;
  Require(!sent || wires.to_port.size() + wires.to_host.size() == 1, "a frame has gone missing", frame);
  for (const auto& [of, bytes] : wires.to_port) {
    Require(sent && way.port == of, "a frame took another way than the card's", frame);
    const bool same = bytes == card.out;
    const bool without_tag = natives.count(of) != 0 && !attached(of) && HasTag(card.out) &&
                             (softcard::Get16(&card.out[kMacs + 2]) & softcard::kVlanBits) == kNative &&
                             bytes == WithoutTag(card.out);
    Require(same || without_tag, "another frame left than the card's", frame);
  }
  return 0;
}
