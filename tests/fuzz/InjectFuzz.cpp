// Frames of any bytes on a card that has a row for everything: the first byte chooses the port, the rest is the frame.
// What has to hold whatever comes is checked here; what must not happen at all, the sanitizers see.

#include <cstdint>
#include <cstdlib>
#include <iostream>

#include "softcard/packets/Packet.h"
#include "tests/fuzz/FullCard.h"

namespace {

using softcard::Bytes;
using softcard::Way;

constexpr unsigned int kMtu = 1500;
constexpr std::size_t kMostAdded = 18 + 3 * 4;  // an Ethernet header with its tag, and three labels

void Require(bool held, const char* what, const Bytes& frame) {
  if (held) return;
  std::cerr << what << ": " << Text(frame) << '\n';
  std::abort();
}

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
