#include <gtest/gtest.h>

#include "hal/EgressManager.h"
#include "hal/HwEncapsulationResourceManager.h"
#include "hal/IngressManager.h"
#include "hal/IntfManager.h"
#include "hal/MyStationManager.h"
#include "tests/softcard/packets/PacketCard.h"

namespace {

using softcard::Bytes;
using softcard::CardDescription;
using softcard::Carried;
using softcard::Way;
using Action = softcard::LabelAction::Kind;

std::string OutOf(const std::string& port, const std::string& frame) { return port + ": " + Text(Hex(frame)); }
std::string Eth3(const std::string& frame) { return OutOf("eth3", frame); }

const std::string kIpv6To = "20010db8000000000000000000000002";
std::string Ipv6(const std::string& hop_limit) {
  return "6ab00000 0004 11" + hop_limit + " 20010db8000000000000000000000001 " + kIpv6To + " deadbeef";
}

class ForwardingTest : public ::testing::Test {
 protected:
  EgressManager& egresses_ = *HwEncapsulationResourceManager::GetInstance()->egress_mng();
  IntfManager& intfs_ = *HwEncapsulationResourceManager::GetInstance()->intf_mng();
  MyStationManager& stations_ = *HwEncapsulationResourceManager::GetInstance()->my_station_mng();
  unsigned char mac_[6] = {0x02, 0x00, 0x00, 0x00, 0x00, 0x0a};
  PacketCard card_;
};

TEST_F(ForwardingTest, ARoutedPacketLeavesWithOneTtlLessAndTheChecksumThatGoesWithIt) {
  card_.Route("198.51.100.0", 24, card_.Host());
  EXPECT_EQ(card_.Injected(kRouted), Eth3(kToNextHop + "0800 " + kIp63));
}

TEST_F(ForwardingTest, TheChecksumIsRightWhereItsSumWrapsAround) {
  card_.Route("0.0.0.0", 0, card_.Host());
  const std::string tail = " c0000201 c6336401 deadbeef";
  EXPECT_EQ(card_.Injected(kToRouter + "0800 45a00018 8dff0000 40110000" + tail),
            Eth3(kToNextHop + "0800 45a00018 8dff0000 3f110100" + tail));
  EXPECT_EQ(card_.Injected(kToRouter + "0800 45a00018 8efe0000 4011ff00" + tail),
            Eth3(kToNextHop + "0800 45a00018 8efe0000 3f110001" + tail));
  EXPECT_EQ(card_.Injected(kToRouter + "0800 45a00018 8eff0000 4011feff" + tail),
            Eth3(kToNextHop + "0800 45a00018 8eff0000 3f110000" + tail));
}

TEST_F(ForwardingTest, OptionsOfAnIpv4HeaderGoAlong) {
  card_.Route("0.0.0.0", 0, card_.Host());
  EXPECT_EQ(card_.Injected(kToRouter + "0800 46a0001c 12340000 4011e6c2 c0000201 c6336401 94040000 deadbeef"),
            Eth3(kToNextHop + "0800 46a0001c 12340000 3f11e7c2 c0000201 c6336401 94040000 deadbeef"));
}

TEST_F(ForwardingTest, Ipv6HasAHopLimitAndNoChecksum) {
  card_.Route("2001:db8::", 32, card_.Host());
  EXPECT_EQ(card_.Injected(kToRouter + "86dd" + Ipv6("40")), Eth3(kToNextHop + "86dd" + Ipv6("3f")));
}

TEST_F(ForwardingTest, WhatFilledTheFrameUpStaysBehind) {
  card_.Route("198.51.100.0", 24, card_.Host());
  card_.Route("2001:db8::", 32, card_.Host());
  EXPECT_EQ(card_.Injected(kRouted + "000000000000"), Eth3(kToNextHop + "0800" + kIp63));
  EXPECT_EQ(card_.Injected(kToRouter + "86dd" + Ipv6("40") + "0000"), Eth3(kToNextHop + "86dd" + Ipv6("3f")));
}

TEST_F(ForwardingTest, TwoLabelsArePushedTheLastRecordOutermostTheFirstAtTheBottom) {
  card_.Route("198.51.100.0", 24, card_.Push({100, 200}));
  EXPECT_EQ(card_.Injected(kRouted), Eth3(kToNextHop + "8847 000c8aff 00064bff" + kIp63));
}

TEST_F(ForwardingTest, WithoutFlagsALabelHasItsOwnExpAndThePacketsTtl) {
  card_.Route("198.51.100.0", 24, card_.Host(card_.Tunnel({{0, 100, 0, 6, 9}})));
  EXPECT_EQ(card_.Injected(kRouted), Eth3(kToNextHop + "8847 00064d3f" + kIp63));
}

TEST_F(ForwardingTest, ALabelOfTwentyBitsFillsItsField) {
  card_.Route("198.51.100.0", 24, card_.Vc(0xFFFFF));
  EXPECT_EQ(card_.Injected(kRouted), Eth3(kToNextHop + "8847 fffffb3f" + kIp63));
}

TEST_F(ForwardingTest, TheEgressObjectsLabelLiesBelowThoseOfTheInitiator) {
  card_.Route("198.51.100.0", 24, card_.Push({300, 400}, 16, 2));
  EXPECT_EQ(card_.Injected(kRouted), Eth3(kToNextHop + "8847 00190aff 0012caff 00010b3f" + kIp63));
}

TEST_F(ForwardingTest, TheEgressObjectsLabelCountsOnlyWithAControlAndWhenThereIsOne) {
  const std::string plain = Eth3(kToNextHop + "0800" + kIp63);
  card_.Route("198.51.100.0", 24, card_.Host(card_.intf, 16, 0));
  EXPECT_EQ(card_.Injected(kRouted), plain);
  card_.Route("198.51.100.0", 24, card_.Host(card_.intf, PacketCard::kNoLabel, 1));
  EXPECT_EQ(card_.Injected(kRouted), plain);
  card_.Route("198.51.100.0", 24, card_.Host(card_.intf, 0, 1));
  EXPECT_EQ(card_.Injected(kRouted), Eth3(kToNextHop + "8847 00000b3f" + kIp63));
}

TEST_F(ForwardingTest, ImplicitNullIsNoLabelOnTheWire) {
  card_.Route("198.51.100.0", 24, card_.Host(card_.Tunnel({{1, 3, 0, 0, 255}}), 3, 1));
  EXPECT_EQ(card_.Injected(kRouted), Eth3(kToNextHop + "0800" + kIp63));
}

TEST_F(ForwardingTest, AnExpMapOfTheCardsDescriptionTellsTheExpByThePacketsPriority) {
  CardDescription description;
  description.exp_maps[1] = {7, 6, 5, 4, 3, 2, 1, 0};
  card_.card.Reset();
  PacketCard card(description);
  card.Route("198.51.100.0", 24, card.Push({100}));
  EXPECT_EQ(card.Injected(kRouted), Eth3(kToNextHop + "8847 000645ff" + kIp63));
  const int other_map = card.Tunnel({{PacketCard::kSetTtl | PacketCard::kRemarkExp, 100, 2, 0, 255}});
  card.Route("198.51.100.0", 24, card.Host(other_map));
  EXPECT_EQ(card.Injected(kRouted), Eth3(kToNextHop + "8847 00064bff" + kIp63));
}

TEST_F(ForwardingTest, TheTrafficClassIsAnIpv6PacketsPriority) {
  card_.Route("2001:db8::", 32, card_.Push({100}));
  EXPECT_EQ(card_.Injected(kToRouter + "86dd" + Ipv6("40")), Eth3(kToNextHop + "8847 00064bff" + Ipv6("3f")));
}

TEST_F(ForwardingTest, ASwapReplacesTheIncomingLabelAndLeavesWhatLiesBelow) {
  card_.LabelTo(500, card_.Swap(300));
  EXPECT_EQ(card_.Injected(kToRouter + "8847 001f4440 00258140" + kIp64),
            Eth3(kToNextHop + "8847 0012c43f 00258140" + kIp64));
  EXPECT_EQ(card_.Injected(kToRouter + "8847 001f4740" + kIp64), Eth3(kToNextHop + "8847 0012c73f" + kIp64))
      << "the bottom of the stack, EXP 3";
}

TEST_F(ForwardingTest, ATunnelsLabelLiesAboveTheSwappedOne) {
  card_.LabelTo(500, card_.Push({400}, 300, 1));
  EXPECT_EQ(card_.Injected(kToRouter + "8847 001f4440 00258140" + kIp64),
            Eth3(kToNextHop + "8847 001904ff 0012c43f 00258140" + kIp64));
}

TEST_F(ForwardingTest, APushTakesTheIncomingLabelsPlaceToo) {
  card_.LabelTo(500, card_.Push({100, 200}));
  EXPECT_EQ(card_.Injected(kToRouter + "8847 001f4740" + kIp64), Eth3(kToNextHop + "8847 000c86ff 000647ff" + kIp64));
}

TEST_F(ForwardingTest, WithoutALabelOfItsOwnADestinationGetsWhatLayBelow) {
  card_.LabelTo(500, card_.Host());
  EXPECT_EQ(card_.Injected(kToRouter + "8847 001f4710" + kIp64),
            Eth3(kToNextHop + "0800 45a00018 12340000 0f11accb c0000201 c6336401 deadbeef"))
      << "the packet must not outlive its label";
  EXPECT_EQ(card_.Injected(kToRouter + "8847 001f47ff" + kIp64), Eth3(kToNextHop + "0800" + kIp64))
      << "a tunnel's 255 does not make it younger";
  EXPECT_EQ(card_.Injected(kToRouter + "8847 001f4440 002581ff" + kIp64), Eth3(kToNextHop + "8847 0025813f" + kIp64));
  EXPECT_EQ(card_.Injected(kToRouter + "8847 001f4740" + Ipv6("40")), Eth3(kToNextHop + "86dd" + Ipv6("3f")));
  EXPECT_EQ(card_.Injected(kToRouter + "8847 001f4740 12345678"), "malformed");
}

TEST_F(ForwardingTest, APoppedPacketIsRoutedInTheLabelsVrf) {
  card_.Route("198.51.100.0", 24, card_.Host(), 7);
  card_.Label(500, Action::kPopVrf, 7);
  EXPECT_EQ(card_.Injected(kToRouter + "8847 001f47ff" + kIp64), Eth3(kToNextHop + "0800" + kIp63));
  EXPECT_EQ(card_.Injected(kRouted), "no-route") << "VRF 1 has none";
}

TEST_F(ForwardingTest, BelowAPoppedLabelTheNextOneIsLookedUp) {
  card_.Label(500, Action::kPopVrf, 1);
  card_.LabelTo(600, card_.Swap(300));
  EXPECT_EQ(card_.Injected(kToRouter + "8847 001f4410 002589ff" + kIp64), Eth3(kToNextHop + "8847 0012c90f" + kIp64));
  EXPECT_EQ(card_.Injected(kToRouter + "8847 001f4410 002599ff" + kIp64), "no-label") << "label 601 has no row";
}

TEST_F(ForwardingTest, AnExplicitNullLabelEndsThePathInTheVrfOfItsVlan) {
  card_.Route("198.51.100.0", 24, card_.Host());
  card_.Route("2001:db8::", 32, card_.Host());
  EXPECT_EQ(card_.Injected(kToRouter + "8847 000001ff" + kIp64), Eth3(kToNextHop + "0800" + kIp63));
  EXPECT_EQ(card_.Injected(kToRouter + "8847 000021ff" + Ipv6("40")), Eth3(kToNextHop + "86dd" + Ipv6("3f")));
  EXPECT_EQ(card_.Injected(kToRouter + "8847 000031ff" + kIp64), "no-label") << "implicit null is never on the wire";
}

TEST_F(ForwardingTest, AnAttachedPortsFramesGoWholeIntoTheirVirtualCircuit) {
  const unsigned int circuit = card_.Push({200}, 16, 2);
  ASSERT_EQ(card_.card.tables().attachments.Set(7, circuit, card_.card.tables().ports), 0);
  const std::string untagged = "020000000002 020000000003 0806 00010203";
  const std::string tagged = "020000000002 020000000003 8100a00a 0806 00010203";
  EXPECT_EQ(card_.Injected(untagged, 7), Eth3(kToNextHop + "8847 000c80ff 000101ff" + untagged));
  EXPECT_EQ(card_.Injected(tagged, 7), Eth3(kToNextHop + "8847 000c8aff 00010bff" + tagged)) << "EXP is the tag's PCP";
  EXPECT_EQ(card_.Injected(untagged, 8), "not-routed");
}

TEST_F(ForwardingTest, TheFrameOutOfAVirtualCircuitLeavesAsItIs) {
  card_.Label(16, Action::kPopPort, 7);
  const std::string inner = "020000000002 020000000003 0806 00010203";
  EXPECT_EQ(card_.Injected(kToRouter + "8847 000101ff" + inner), OutOf("eth7", inner));
  EXPECT_EQ(card_.Injected(kToRouter + "8847 000100ff 000101ff" + inner), "malformed") << "a label below";
  EXPECT_EQ(card_.Injected(kToRouter + "8847 000101ff 0200000000020200000000"), "malformed") << "no whole frame";
  EXPECT_EQ(card_.Injected(kToRouter + "8847 00010101" + inner), "ttl");
}

TEST_F(ForwardingTest, AReplaceThatChangesTheEgressObjectIsFollowed) {
  const unsigned int destination = card_.Host();
  card_.Route("198.51.100.0", 24, destination);
  EXPECT_EQ(card_.Injected(kRouted), Eth3(kToNextHop + "0800" + kIp63));
  card_.records.at(static_cast<int>(destination)).egress_id =
      card_.records.at(static_cast<int>(card_.Vc(16))).egress_id;
  EXPECT_EQ(card_.Injected(kRouted), Eth3(kToNextHop + "8847 00010b3f" + kIp63));
}

TEST_F(ForwardingTest, SourceAndTagAreTheInterfacesEvenAfterAnUpdate) {
  card_.Route("198.51.100.0", 24, card_.Host());
  intfs_.UpdateIntf(card_.intf, 0, 1, 4094, mac_, 1500, 0);
  EXPECT_EQ(card_.Injected(kRouted), Eth3("00005e000201 02000000000a 81000ffe 0800" + kIp63));
}

TEST_F(ForwardingTest, AMyStationEntryMatchesOtherVlansUnderItsMask) {
  card_.Route("198.51.100.0", 24, card_.Host());
  stations_.InsertMyStationVlanEntry(0x200, 0xF00, mac_, 0);
  HwEncapsulationResourceManager::GetInstance()->ingress_mng()->AssociateVlanToVrf(0x234, 1);
  EXPECT_EQ(card_.Injected("02000000000a 020000000001 81000234 0800" + kIp64), Eth3(kToNextHop + "0800" + kIp63));
  EXPECT_EQ(card_.Injected("02000000000a 020000000001 81000334 0800" + kIp64), "not-routed");
  EXPECT_EQ(card_.Injected("02000000000a 020000000001 81000235 0800" + kIp64), "not-routed") << "in no VRF";
}

TEST_F(ForwardingTest, TheTagsPriorityIsNoPartOfTheVlan) {
  card_.Route("198.51.100.0", 24, card_.Host());
  EXPECT_EQ(card_.Injected("00005e000101 020000000001 8100e064 0800" + kIp64), Eth3(kToNextHop + "0800" + kIp63));
}

TEST_F(ForwardingTest, TheCpuGetsTheFrameAsItCameWhateverItsTtl) {
  const int egress =
      egresses_.CreateEgress(-1, mac_, 0, 0, 3, PacketCard::kNoLabel, true, false, EXP_LABEL_CONTROL_NONE);
  card_.Route("198.51.100.0", 24, card_.Record(-1, egress));
  const std::string last = kToRouter + "0800 45a00018 12340000 0111bacb c0000201 c6336401 deadbeef";
  EXPECT_EQ(card_.Injected(last), OutOf("to cpu", last));
}

TEST_F(ForwardingTest, AnEgressObjectOnTheCpuPortSendsThere) {
  card_.Route("198.51.100.0", 24, card_.Host(card_.intf, PacketCard::kNoLabel, 0, 0));
  EXPECT_EQ(card_.Injected(kRouted), OutOf("cpu", kToNextHop + "0800" + kIp63));
}

TEST_F(ForwardingTest, SendingBeginsBehindTheRoutingAndLeavesTheTtl) {
  EXPECT_EQ(card_.Sent(card_.Host(), kIp64), Eth3(kToNextHop + "0800" + kIp64));
  EXPECT_EQ(card_.Sent(card_.Vc(16), kIp64), Eth3(kToNextHop + "8847 00010b40" + kIp64));
  EXPECT_EQ(card_.Sent(card_.Host(), "45a00018 12340000 0011bbcb c0000201 c6336401 deadbeef"),
            Eth3(kToNextHop + "0800 45a00018 12340000 0011bbcb c0000201 c6336401 deadbeef"));
}

TEST_F(ForwardingTest, OfALabelledPacketThatIsSentASwapReplacesTheFirstLabelAPushDoesNot) {
  const std::string labelled = "001f4440 00258140" + kIp64;
  EXPECT_EQ(card_.Sent(card_.Swap(300), labelled, Carried::kLabels),
            Eth3(kToNextHop + "8847 0012c440 00258140" + kIp64));
  EXPECT_EQ(card_.Sent(card_.Push({100}), labelled, Carried::kLabels), Eth3(kToNextHop + "8847 000644ff" + labelled));
  EXPECT_EQ(card_.Sent(card_.Host(), labelled, Carried::kLabels), Eth3(kToNextHop + "8847" + labelled));
}

TEST_F(ForwardingTest, AWholeFrameThatIsSentTakesALabel) {
  const std::string frame = "020000000002 020000000003 0806 00010203";
  EXPECT_EQ(card_.Sent(card_.Vc(16), frame, Carried::kEthernet), Eth3(kToNextHop + "8847 000101ff" + frame));
  EXPECT_EQ(card_.Sent(card_.Host(), frame, Carried::kEthernet), "no-label");
}

TEST_F(ForwardingTest, AllPacketsOfAFlowLeaveByTheSameMemberOfALagAndFlowsAreSpread) {
  softcard::Tables& tables = card_.card.tables();
  ASSERT_EQ(tables.lags.Set(1001, {5, 6, 7}, tables.ports), 0);
  card_.Route("0.0.0.0", 0, card_.Host(card_.intf, PacketCard::kNoLabel, 0, 1001));
  EXPECT_EQ(card_.Injected(kRouted).substr(0, 4), "eth7") << "the same on every host";
  const auto with_checksum = [](Bytes bytes) {
    softcard::Put16(&bytes[18 + 10], 0);
    softcard::Put16(&bytes[18 + 10], softcard::InternetChecksum(&bytes[18], 20));
    return bytes;
  };
  for (const unsigned int protocol : {6, 17, 253}) {
    std::map<int, int> used;
    for (unsigned int flow = 0; flow < 256; ++flow) {
      Bytes frame = Hex(kRouted);
      frame[18 + 9] = static_cast<unsigned char>(protocol);
      softcard::Put16(&frame[18 + 18], flow);  // the destination's lower half
      const Way first = card_.Inject(with_checksum(frame));
      ASSERT_EQ(first.fate, Way::Fate::kSent);
      ++used[first.port];
      frame[18 + 1] = 0;      // type of service
      frame[18 + 4] ^= 0xFF;  // identification
      frame[18 + 6] = 0x20;   // a first fragment
      frame[18 + 8] = 9;      // TTL
      EXPECT_EQ(card_.Inject(with_checksum(frame)).port, first.port);
    }
    EXPECT_EQ(used.size(), 3U);
    for (const auto& port : used) EXPECT_GT(port.second, 60) << "of protocol " << protocol;
  }
}

TEST_F(ForwardingTest, ALagWhoseMembersNobodyToldIsOnePort) {
  card_.Route("198.51.100.0", 24, card_.Host(card_.intf, PacketCard::kNoLabel, 0, 1002));
  EXPECT_EQ(card_.Injected(kRouted), OutOf("lag2", kToNextHop + "0800" + kIp63));
}

TEST_F(ForwardingTest, ForwardingIsNoCall) {
  card_.Route("198.51.100.0", 24, card_.Push({100}));
  card_.card.log().Clear();
  card_.card.faults().FailEvery("HwObject::vlan_id", 7);
  EXPECT_EQ(card_.Injected(kRouted), Eth3(kToNextHop + "8847 00064bff" + kIp63));
  EXPECT_TRUE(card_.card.log().Lines().empty());
}

}  // namespace
