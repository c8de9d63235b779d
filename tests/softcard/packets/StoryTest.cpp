#include <gtest/gtest.h>

#include "hal/EgressManager.h"
#include "hal/HwEncapsulationResourceManager.h"
#include "hal/IntfManager.h"
#include "softcard/packets/Counters.h"
#include "tests/softcard/packets/PacketCard.h"

namespace {

using softcard::Bytes;
using softcard::Way;
using Action = softcard::LabelAction::Kind;

class StoryTest : public ::testing::Test {
 protected:
  std::string LastLine(const std::string& frame, int port = 1) {
    std::string story = card_.StoryOf(frame, port);
    story.pop_back();
    return story.substr(story.rfind('\n') + 1);
  }

  unsigned char mac_[6] = {0x02, 0x00, 0x00, 0x00, 0x00, 0x0a};
  PacketCard card_;
};

TEST_F(StoryTest, EveryTableThatDecidedIsNamedThenTheFrameFromTheOutsideIn) {
  card_.Route("198.51.0.0", 16, card_.Push({100, 200}, 16, 2));
  EXPECT_EQ(card_.StoryOf(kToRouter + "0800" + kIp64), R"(
in through eth1, 42 bytes
station 100: mask=0xfff mac=00:00:5e:00:01:01 flags=0x0
association 100: vrf=1
route 198.51.0.0/16: vrf=1 destination=1
destination 1: intf=2 egress=100001
egress 100001: intf=2 mac=00:00:5e:00:02:01 vlan=100 port=eth3 label=16 to_cpu=false drop=false control=2
intf 2: vrf=1 vlan=100 mac=00:00:5e:00:01:01 mtu=1500 flags=0x0 tunnel=none
initiator 2: labels=[{flags=0x11, label=100, qos_map=1, exp=0, ttl=255}, {flags=0x11, label=200, qos_map=1, exp=0, ttl=255}]
| ethernet dst=00:00:5e:00:02:01 src=00:00:5e:00:01:01 type=0x8100
| 802.1q vlan=100 type=0x8847
| mpls label=200 exp=5 s=0 ttl=255
| mpls label=100 exp=5 s=0 ttl=255
| mpls label=16 exp=5 s=1 ttl=63
| ipv4 src=192.0.2.1 dst=198.51.100.1 ttl=63 tos=0xa0 size=24
sent through eth3, 54 bytes
)");
}

TEST_F(StoryTest, LabelsAreLookedUpOneAfterTheOther) {
  card_.Label(600, Action::kPopVrf, 1);
  card_.LabelTo(500, card_.Swap(300));
  EXPECT_EQ(card_.StoryOf(kToRouter + "8847 00258040 001f4440 00320140 20010db8"), R"(
in through eth1, 34 bytes
station 100: mask=0xfff mac=00:00:5e:00:01:01 flags=0x0
association 100: vrf=1
label 600: action=pop-vrf to=1
label 500: action=destination to=1
destination 1: intf=1 egress=100001
egress 100001: intf=1 mac=00:00:5e:00:02:01 vlan=100 port=eth3 label=300 to_cpu=false drop=false control=1
intf 1: vrf=1 vlan=100 mac=00:00:5e:00:01:01 mtu=1500 flags=0x0 tunnel=none
| ethernet dst=00:00:5e:00:02:01 src=00:00:5e:00:01:01 type=0x8100
| 802.1q vlan=100 type=0x8847
| mpls label=300 exp=2 s=0 ttl=63
| mpls label=800 exp=0 s=1 ttl=64
| payload size=4
sent through eth3, 30 bytes
)");
}

TEST_F(StoryTest, ANullLabelWithoutARowIsNoneOfATables) {
  const std::string frame = kToRouter + "8847 00000140" + kIp64;
  card_.Route("198.51.0.0", 16, card_.Host());
  EXPECT_NE(card_.StoryOf(frame).find("\nlabel 0: explicit null, popped; on in VRF 1\n"), std::string::npos);
  card_.Label(0, Action::kPopVrf, 1);
  EXPECT_NE(card_.StoryOf(frame).find("\nlabel 0: action=pop-vrf to=1\n"), std::string::npos);
}

TEST_F(StoryTest, AVirtualCircuitCarriesAFrameInAFrame) {
  softcard::Tables& tables = card_.card.tables();
  tables.attachments.Set(7, card_.Vc(16), tables.ports);
  const std::string story = card_.StoryOf("020000000002 020000000003 8100a00a 0806 00010203", 7);
  EXPECT_EQ(story.substr(0, story.find("egress")), R"(
in through eth7, 22 bytes
attachment eth7: destination=1
destination 1: intf=1 )");
  EXPECT_NE(story.find(R"(
| mpls label=16 exp=5 s=1 ttl=255
| ethernet dst=02:00:00:00:00:02 src=02:00:00:00:00:03 type=0x8100
| 802.1q vlan=10 type=0x806
| payload size=4
)"),
            std::string::npos)
      << story;
}

TEST_F(StoryTest, AnIpv6PacketIsToldInItsOwnWay) {
  card_.Route("2001:db8::", 32, card_.Host());
  const std::string story = card_.StoryOf(
      kToRouter + "86dd 6ab00000 0004 1140 20010db8000000000000000000000001 20010db8000000000000000000000002 deadbeef");
  EXPECT_NE(story.find("\nroute 2001:db8::/32: vrf=1 destination=1\n"), std::string::npos) << story;
  EXPECT_NE(story.find("\n| ipv6 src=2001:db8::1 dst=2001:db8::2 ttl=63 tos=0xab size=44\n"), std::string::npos)
      << story;
}

TEST_F(StoryTest, TheMembersOfALagAreNamed) {
  softcard::Tables& tables = card_.card.tables();
  tables.lags.Set(1001, {5, 6, 7}, tables.ports);
  card_.Route("0.0.0.0", 0, card_.Host(card_.intf, PacketCard::kNoLabel, 0, 1001));
  const std::string story = card_.StoryOf(kToRouter + "0800" + kIp64);
  EXPECT_NE(story.find("\nmembers lag1: ports=eth5,eth6,eth7\n"), std::string::npos) << story;
}

TEST_F(StoryTest, WhatIsAtOddsWithItselfIsSaid) {
  card_.Route("198.51.0.0", 16, card_.Host());
  EXPECT_EQ(card_.StoryOf(kToRouter + "0800" + kIp64).find("at odds"), std::string::npos);
  IntfManager& intfs = *HwEncapsulationResourceManager::GetInstance()->intf_mng();
  intfs.UpdateIntf(card_.intf, 0, 1, 200, mac_, 1500, 0);
  IntfObject* object = nullptr;
  intfs.GetIntfObject(card_.intf, &object);
  object->tunnel().set_type(TunnelObject::kTunnelTypeMpls);
  card_.records.at(1).intf_id = 9;
  const std::string story = card_.StoryOf(kToRouter + "0800" + kIp64);
  for (const char* const line :
       {"\nat odds: the egress object is on VLAN 100, its interface on VLAN 200: the frame is tagged with the "
        "interface's\n",
        "\nat odds: interface 1 starts an MPLS tunnel and has no initiator: it pushes nothing\n",
        "\nat odds: the destination's record names interface 9, its egress object is bound to 1\n"}) {
    EXPECT_NE(story.find(line), std::string::npos) << story;
  }
}

TEST_F(StoryTest, ADropEndsTheStoryWithItsNameAndItsReason) {
  EXPECT_EQ(LastLine("00005e00"), "dropped: malformed: the Ethernet header is cut off");
  EXPECT_EQ(LastLine("00005e000102 020000000001 81000064 0800"),
            "dropped: not-routed: no my-station entry has 00:00:5e:00:01:02 on VLAN 100");
  EXPECT_EQ(LastLine(kToRouter + "0806"), "dropped: not-routed: Ethernet type 0x806 is not routed");
  EXPECT_EQ(LastLine(kToRouter + "0800" + kIp64), "dropped: no-route: VRF 1 has no route to 198.51.100.1");
  EXPECT_EQ(LastLine(kToRouter + "8847 001f4140"), "dropped: no-label: label 500 has no row");
  EXPECT_EQ(LastLine(kToRouter + "0800", 99), "dropped: no-port: 99 is no Ethernet port of this card");
  card_.Route("198.51.0.0", 16, 7);
  EXPECT_EQ(LastLine(kToRouter + "0800" + kIp64), "dropped: no-record: destination 7 is not installed");
  card_.Route("198.51.0.0", 16, card_.Record(1, 0));
  EXPECT_EQ(LastLine(kToRouter + "0800" + kIp64),
            "dropped: no-egress: destination 1 is a VLAN, not a way to a next hop");
}

TEST_F(StoryTest, CountersTellPacketsAndBytesByDestinationPortAndDrop) {
  softcard::Counters counters;
  card_.Route("198.51.0.0", 16, card_.Vc(16));
  const Bytes good = Hex(kToRouter + "0800" + kIp64);
  const Bytes cut = Hex("00005e");
  for (int i = 0; i < 2; ++i) {
    const Way way = card_.Inject(good);
    counters.Injected(1, way, good.size(), card_.out.size());
  }
  const Way dropped = card_.Inject(cut, nullptr, 2);
  counters.Injected(2, dropped, cut.size(), card_.out.size());
  const Way nowhere = card_.Inject(good, nullptr, 99);
  counters.Injected(99, nowhere, good.size(), card_.out.size());
  const Way sent = card_.Send(1, Hex(kIp64));
  counters.Sent(sent, 24, card_.out.size());
  const auto rows = counters.Rows(card_.card.tables().ports);
  EXPECT_EQ(softcard::Texts(rows), (std::vector<std::string>{
                                       "counter destination 1: packets=3 bytes=138",
                                       "counter eth1 in: packets=2 bytes=84",
                                       "counter eth2 in: packets=1 bytes=3",
                                       "counter eth3 out: packets=3 bytes=138",
                                       "counter drop no-port: packets=1 bytes=42",
                                       "counter drop malformed: packets=1 bytes=3",
                                   }));
  EXPECT_EQ(counters.row_count(), rows.size());
  EXPECT_EQ(counters.destination(1).packets, 3U);
  EXPECT_EQ(counters.destination(2).packets, 0U);
}

}  // namespace
