#include <gtest/gtest.h>

#include <random>

#include "hal/EgressManager.h"
#include "hal/HwEncapsulationResourceManager.h"
#include "hal/IngressManager.h"
#include "hal/IntfManager.h"
#include "softcard/packets/Counters.h"
#include "tests/softcard/packets/PacketCard.h"

namespace {

using softcard::Bytes;
using softcard::Carried;
using softcard::Way;
using Action = softcard::LabelAction::Kind;

class DropTest : public ::testing::Test {
 protected:
  /// A destination with this egress object.
  unsigned int WithEgress(int intf, int port, bool drop) {
    const int egress =
        egresses_.CreateEgress(intf, mac_, 100, 0, port, PacketCard::kNoLabel, false, drop, EXP_LABEL_CONTROL_NONE);
    return card_.Record(intf, egress);
  }
  std::string RoutedTo(unsigned int destination, const std::string& frame = kRouted) {
    card_.Route("198.51.100.0", 24, destination);
    return card_.Injected(frame);
  }

  EgressManager& egresses_ = *HwEncapsulationResourceManager::GetInstance()->egress_mng();
  IntfManager& intfs_ = *HwEncapsulationResourceManager::GetInstance()->intf_mng();
  unsigned char mac_[6] = {0x02, 0x00, 0x00, 0x00, 0x00, 0x0a};
  PacketCard card_;
};

TEST_F(DropTest, AFrameForAnotherAddressOrOnAnotherVlanIsNotRouted) {
  EXPECT_EQ(card_.Injected("00005e000102 020000000001 81000064 0800" + kIp64), "not-routed");
  EXPECT_EQ(card_.Injected("ffffffffffff 020000000001 81000064 0800" + kIp64), "not-routed");
  EXPECT_EQ(card_.Injected("00005e000101 020000000001 81000065 0800" + kIp64), "not-routed");
  EXPECT_EQ(card_.Injected("00005e000101 020000000001 81000000 0800" + kIp64), "not-routed") << "a tag without a VLAN";
  EXPECT_EQ(card_.Injected("00005e000101 020000000001 0800" + kIp64), "not-routed") << "no tag";
}

TEST_F(DropTest, AVlanInNoVrfIsNotRouted) {
  HwEncapsulationResourceManager::GetInstance()->ingress_mng()->DissociateVlanfromVrf(100, 1);
  EXPECT_EQ(card_.Injected(kRouted), "not-routed");
}

TEST_F(DropTest, WhatIsNeitherIpNorMplsIsNotRouted) {
  EXPECT_EQ(card_.Injected(kToRouter + "0806 0001080006040001"), "not-routed");
  EXPECT_EQ(card_.Injected(kToRouter + "002e" + kIp64), "not-routed") << "a length, not a type";
  EXPECT_EQ(card_.Injected(kToRouter + "8100 0064 0800" + kIp64), "not-routed") << "two tags";
  EXPECT_EQ(card_.Injected(kToRouter + "8848" + kIp64), "not-routed") << "MPLS to many";
}

TEST_F(DropTest, WhatIsFetchedAheadMayBeAnyBytes) {
  card_.Route("198.51.100.0", 24, card_.Host());
  card_.Route("::", 0, card_.Host());
  const Bytes frames[] = {Hex(kToRouter + "0800" + kIp64), Hex(kToRouter + "86dd" + std::string(88, 'f')),
                          Hex(kToRouter)};
  for (const Bytes& whole : frames) {
    for (std::size_t size = 0; size <= whole.size(); ++size) {
      const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      const std::string before = card_.Injected(Text(cut));
      softcard::Prefetch(card_.card.tables(), cut);
      EXPECT_EQ(card_.Injected(Text(cut)), before) << size;
    }
  }
}

TEST_F(DropTest, TheReservedVlanIsMalformed) {
  EXPECT_EQ(card_.Injected("00005e000101 020000000001 81000fff 0800" + kIp64), "malformed");
}

TEST_F(DropTest, APacketWithoutARouteIsDropped) {
  EXPECT_EQ(card_.Injected(kRouted), "no-route");
  card_.Route("198.51.101.0", 24, card_.Host());
  card_.Route("0.0.0.0", 0, card_.Host(), 2);
  EXPECT_EQ(card_.Injected(kRouted), "no-route") << "only another prefix and another VRF have one";
}

TEST_F(DropTest, ALabelWithoutARowIsDropped) {
  EXPECT_EQ(card_.Injected(kToRouter + "8847 001f4140" + kIp64), "no-label");
  EXPECT_EQ(card_.Injected(kToRouter + "8847 00001140" + kIp64), "no-label")
      << "router alert has no meaning of its own";
}

TEST_F(DropTest, AWholeFrameTakesALabel) {
  ASSERT_EQ(card_.card.tables().attachments.Set(1, card_.Host(), card_.card.tables().ports), 0);
  EXPECT_EQ(card_.Injected(kRouted), "no-label");
}

TEST_F(DropTest, ADestinationThatIsNotInstalledOrWasDestroyedDropsUnderItsName) {
  EXPECT_EQ(RoutedTo(77), "no-record");
  const unsigned int destination = card_.Host();
  EXPECT_NE(RoutedTo(destination), "no-record");
  card_.records.erase(static_cast<int>(destination));
  EXPECT_EQ(card_.Injected(kRouted), "no-record");
  EXPECT_EQ(card_.Sent(destination, kIp64), "no-record");
}

TEST_F(DropTest, ARecordWithoutAnEgressObjectDrops) {
  EXPECT_EQ(RoutedTo(card_.Record(card_.intf, 0)), "no-egress") << "a VLAN";
  EXPECT_EQ(RoutedTo(card_.Record(card_.intf, 7)), "no-egress");
  EXPECT_EQ(RoutedTo(card_.Record(card_.intf, -4)), "no-egress") << "what a failed replace leaves";
}

TEST_F(DropTest, AnEgressObjectBoundToNoInterfaceDrops) {
  EXPECT_EQ(RoutedTo(WithEgress(-1, 3, false)), "no-interface");
}

TEST_F(DropTest, ADeletedInterfaceDrops) {
  const unsigned int destination = WithEgress(card_.intf, 3, false);
  intfs_.DeleteIntf(0, card_.intf);
  EXPECT_EQ(RoutedTo(destination), "interface-gone");
}

TEST_F(DropTest, LabelsCountAgainstTheMtu) {
  intfs_.UpdateIntf(card_.intf, 0, 1, 100, mac_, 28, 0);
  EXPECT_EQ(RoutedTo(card_.Vc(16)).substr(0, 4), "eth3");
  intfs_.UpdateIntf(card_.intf, 0, 1, 100, mac_, 27, 0);
  EXPECT_EQ(card_.Injected(kRouted), "mtu");
  EXPECT_EQ(RoutedTo(card_.Host()).substr(0, 4), "eth3") << "24 bytes without a label";
}

TEST_F(DropTest, ATtlOfOneOrNoneEndsHere) {
  card_.Route("198.51.100.0", 24, card_.Host());
  const std::string tail = "c0000201 c6336401 deadbeef";
  EXPECT_EQ(card_.Injected(kToRouter + "0800 45a00018 12340000 0111bacb" + tail), "ttl");
  EXPECT_EQ(card_.Injected(kToRouter + "0800 45a00018 12340000 0011bbcb" + tail), "ttl");
  EXPECT_EQ(card_.Injected(kToRouter + "0800 45a00018 12340000 0211b9cb" + tail).substr(0, 4), "eth3");
  card_.LabelTo(500, card_.Swap(300));
  EXPECT_EQ(card_.Injected(kToRouter + "8847 001f4101" + kIp64), "ttl");
  EXPECT_EQ(card_.Injected(kToRouter + "8847 001f4100" + kIp64), "ttl");
  card_.Label(600, Action::kPopVrf, 1);
  EXPECT_EQ(card_.Injected(kToRouter + "8847 00258101" + kIp64), "ttl") << "the label's, not the packet's";
}

TEST_F(DropTest, ADroppingEgressObjectDrops) { EXPECT_EQ(RoutedTo(WithEgress(card_.intf, -18, true)), "action"); }

TEST_F(DropTest, APortThatIsNoEthernetPortTakesNothingIn) {
  for (const int port : {-1, 0, 49, 1001, 5000, 0x7fffffff}) EXPECT_EQ(card_.Injected(kRouted, port), "no-port");
}

TEST_F(DropTest, AHeaderThatLiesIsMalformed) {
  card_.Route("0.0.0.0", 0, card_.Host());
  card_.Route("::", 0, card_.Host());
  const std::string tail = " c0000201 c6336401 deadbeef";
  const char* const lies[] = {
      "35a00018 12340000 40118bcb",  // version 3
      "65a00018 12340000 40115bcb",  // version 6 under the type of IPv4
      "44a00018 12340000 40117ccb",  // a header of 16 bytes
      "4fa00018 12340000 401171cb",  // a header that is longer than the packet
      "45a00019 12340000 40117bca",  // a packet that is longer than the frame
      "45a00013 12340000 40117bd0",  // a packet that is shorter than its header
      "45a00018 12340000 40117bcc",  // a wrong checksum
  };
  for (const char* const lie : lies) {
    std::string frame = kToRouter;
    frame.append("0800").append(lie).append(tail);
    EXPECT_EQ(card_.Injected(frame), "malformed") << lie;
  }
  const std::string addresses = "20010db8000000000000000000000001 20010db8000000000000000000000002";
  EXPECT_EQ(card_.Injected(kToRouter + "86dd 60000000 0004 1140" + addresses + "deadbe"), "malformed");
  EXPECT_EQ(card_.Injected(kToRouter + "86dd 40000000 0004 1140" + addresses + "deadbeef"), "malformed");
}

TEST_F(DropTest, ALabelStackWithoutABottomIsMalformed) {
  card_.Label(500, Action::kPopVrf, 1);
  std::string stack;
  for (int i = 0; i < 300; ++i) stack += "001f4040";
  EXPECT_EQ(card_.Injected(kToRouter + "8847" + stack), "malformed");
  EXPECT_EQ(card_.Injected(kToRouter + "8847"), "malformed");
  card_.Route("198.51.100.0", 24, card_.Host());
  EXPECT_EQ(card_.Injected(kToRouter + "8847" + stack + "001f4140" + kIp64).substr(0, 4), "eth3")
      << "deep, but with a bottom";
  EXPECT_EQ(card_.Sent(card_.Host(), stack, Carried::kLabels), "malformed");
}

TEST_F(DropTest, APacketThatIsNotWholeIsNotSent) {
  const unsigned int destination = card_.Host();
  EXPECT_EQ(card_.Sent(destination, ""), "malformed");
  EXPECT_EQ(card_.Sent(destination, "45"), "malformed");
  EXPECT_EQ(card_.Sent(destination, "60"), "malformed");
  EXPECT_EQ(card_.Sent(destination, "020000000002", Carried::kEthernet), "malformed");
}

/// Frames of every kind that this card sends on.
class CutFrames : public DropTest {
 protected:
  CutFrames() {
    card_.Route("0.0.0.0", 0, card_.Push({100, 200}));
    card_.Route("::", 0, card_.Host());
    card_.LabelTo(500, card_.Swap(300));
    card_.LabelTo(501, card_.Host());
    card_.Label(600, Action::kPopVrf, 1);
    card_.Label(16, Action::kPopPort, 7);
    card_.card.tables().attachments.Set(9, card_.Vc(17), card_.card.tables().ports);
  }

  const std::string ipv6_ =
      "6ab00000 0004 1140 20010db8000000000000000000000001 20010db8000000000000000000000002 deadbeef";
  const std::vector<std::string> frames_ = {
      kRouted,
      kToRouter + "86dd" + ipv6_,
      kToRouter + "8847 001f4440 00258140" + kIp64,
      kToRouter + "8847 001f5140" + kIp64,
      kToRouter + "8847 00258440 00258140" + ipv6_,
      kToRouter + "8847 000101ff 020000000002 020000000003 0806 00010203",
  };
};

TEST_F(CutFrames, ACutFrameIsSentOnlyWhereNobodyHadToKnowWhatWasCutOff) {
  for (const std::string& text : frames_) {
    const Bytes frame = Hex(text);
    ASSERT_EQ(card_.Inject(frame).fate, Way::Fate::kSent) << text;
    for (std::size_t size = 0; size < frame.size(); ++size) {
      // Of its own, so that a look behind its end is noticed.
      const Bytes cut(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(size));
      const Way way = card_.Inject(cut);
      const bool swapped = text == frames_[2] && size >= 18 + 8;
      const bool unwrapped = text == frames_[5] && size >= 18 + 4 + 14;
      if (swapped || unwrapped) {
        EXPECT_EQ(way.fate, Way::Fate::kSent) << text << " cut to " << size;
      } else {
        EXPECT_EQ(way.fate, Way::Fate::kDropped) << text << " cut to " << size;
        // The first 16 bytes of a tagged frame may also be an untagged one.
        EXPECT_EQ(way.drop, softcard::Drop::kMalformed) << text << " cut to " << size;
        EXPECT_TRUE(card_.out.empty());
      }
      const Way attached = card_.Inject(cut, nullptr, 9);
      EXPECT_EQ(attached.fate, size < 18 ? Way::Fate::kDropped : Way::Fate::kSent);
    }
  }
}

TEST_F(CutFrames, WhateverBytesComeTheWayEndsAndTellsTheSameWithAndWithoutAListener) {
  std::seed_seq seed{7};
  std::mt19937 random(seed);
  softcard::Counters counters;
  for (int i = 0; i < 20000; ++i) {
    Bytes frame = Hex(frames_[random() % frames_.size()]);
    for (unsigned long changes = random() % 4; changes > 0; --changes) {
      frame[12 + random() % (frame.size() - 12)] = static_cast<unsigned char>(random());
    }
    frame.resize(frame.size() - std::min<std::size_t>(random() % 8, frame.size()));
    const int port = 1 + static_cast<int>(random() % 10);
    const Way way = card_.Inject(frame, nullptr, port);
    const Bytes left = card_.out;
    softcard::StoryLines story(card_.card.tables().ports);
    const Way told = card_.Inject(frame, &story, port);
    ASSERT_EQ(told.fate, way.fate) << Text(frame);
    ASSERT_EQ(card_.out, left) << Text(frame);
    ASSERT_LE(story.lines().size(), 16 + frame.size() / 2);
    ASSERT_LE(left.size(), frame.size() + 30);
    counters.Injected(port, way, frame.size(), left.size());
  }
  uint64_t dropped = 0, sent = 0;
  for (int drop = 0; drop < softcard::kDrops; ++drop) {
    dropped += counters.drop(static_cast<softcard::Drop>(drop)).packets;
  }
  for (int port = 0; port <= 48; ++port) sent += counters.out(port).packets;
  EXPECT_EQ(dropped + sent, 20000U);
  EXPECT_GT(dropped, 1000U);
  EXPECT_GT(sent, 1000U);
}

}  // namespace
