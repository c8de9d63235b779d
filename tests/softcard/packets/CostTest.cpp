#include <gtest/gtest.h>

#include <random>

#include "tests/softcard/packets/CountedMemory.h"
#include "tests/softcard/packets/PacketCard.h"

namespace {

using softcard::Bytes;
using softcard::IpAddress;
using softcard::Prefix;
using softcard::Way;

TEST(CostTest, WithoutAListenerNothingIsAllocatedWhateverBecomesOfThePacket) {
  PacketCard card;
  card.Route("198.51.100.0", 24, card.Push({100, 200}));
  card.LabelTo(500, card.Swap(300));
  const Bytes frames[] = {Hex(kToRouter + "0800" + kIp64), Hex(kToRouter + "8847 001f4740" + kIp64),
                          Hex(kToRouter + "8847 001f5740" + kIp64), Hex(kToRouter + "0806"), Hex("00")};
  card.out.reserve(100);
  const unsigned long before = counted_memory::Allocations();
  int sent = 0;
  for (const Bytes& frame : frames) sent += card.Inject(frame).fate == Way::Fate::kSent ? 1 : 0;
  EXPECT_EQ(counted_memory::Allocations(), before);
  EXPECT_EQ(sent, 2);
}

/// Random prefixes, from 8 to 32 bits long with most of 24, as in the Internet's table; or all of them single
/// addresses.
void Fill(softcard::RouteTable* routes, unsigned int count, bool addresses) {
  std::seed_seq seed{5};
  std::mt19937 random(seed);
  while (routes->count() < count) {
    unsigned char bytes[4];
    softcard::Put32(bytes, static_cast<uint32_t>(random()));
    const unsigned int length = addresses ? 32 : random() % 10 < 6 ? 24 : 8 + static_cast<unsigned int>(random() % 25);
    ASSERT_EQ(routes->Set(1, Prefix::Around(IpAddress::From(IpAddress::Version::k4, bytes), length), 7), 0);
  }
}

TEST(CostTest, AMillionIpv4RoutesTakeLessThanAHundredMegabytes) {
  for (const bool addresses : {false, true}) {
    softcard::RouteTable routes(1000000);
    const std::size_t before = counted_memory::Live();
    counted_memory::SetMark();
    Fill(&routes, 1000000, addresses);
    EXPECT_LT(counted_memory::Live() - before, 100000000U) << addresses;
    RecordProperty(addresses ? "addresses" : "prefixes", std::to_string(counted_memory::Live() - before));
    EXPECT_LT(counted_memory::HighWater() - before, 200000000U) << "the old table beside the new one while it grows";
  }
}

}  // namespace
