#include "bcm/mpls.h"
#include "softcard/packets/Forwarding.h"
#include "tests/softcard/OnCard.h"

namespace {

using softcard::Bytes;
using softcard::Outcome;
using softcard::Packet;
using Fate = Outcome::Fate;

class ForwardingTest : public OnCard {
 protected:
  static constexpr unsigned int kNone = 0xFFFFFFFF;
  static constexpr unsigned int kSetTtl = BCM_MPLS_EGRESS_LABEL_TTL_SET;
  static constexpr unsigned int kRemarkExp = BCM_MPLS_EGRESS_LABEL_EXP_REMARK;

  /// An IPv4 header of precedence 5 and TTL 63, and four bytes behind it.
  static Bytes Ipv4() {
    return {0x45, 0xa0, 0x00, 0x18, 0x12, 0x34, 0x00, 0x00, 0x3f, 0x11, 0x00, 0x00,
            0x0a, 0x00, 0x00, 0x01, 0x0a, 0x00, 0x00, 0x02, 0xde, 0xad, 0xbe, 0xef};
  }
  static Bytes Header() {
    return {0x02, 0x00, 0x00, 0x00, 0x00, 0x0a, 0x00, 0x00, 0x5e, 0x00, 0x01, 0x01, 0x81, 0x00, 0x00, 0x64};
  }
  static Bytes Joined(Bytes front, const Bytes& back) {
    front.insert(front.end(), back.begin(), back.end());
    return front;
  }

  int CreateLabelled(unsigned int label, ExpLabelControl control) {
    return egresses_.CreateEgress(intf_, host_mac_, 100, 0, 3, label, false, false, control);
  }
  int CreateWith(int intf, bool to_cpu, bool drop) {
    return egresses_.CreateEgress(intf, host_mac_, 100, 0, 3, kNone, to_cpu, drop, EXP_LABEL_CONTROL_NONE);
  }
  void Push(std::vector<bcm_mpls_egress_label_t> labels) {
    ASSERT_EQ(bcm_mpls_tunnel_initiator_set(0, intf_, static_cast<int>(labels.size()), labels.data()), 0);
  }
  Outcome Forward(int egress, const Packet& packet = Packet::Ip(Ipv4())) {
    return softcard::Forward(card_.tables(), egress, packet);
  }
  /// The frame behind the addresses and the VLAN tag, which are checked.
  Bytes Behind(int egress, const Packet& packet = Packet::Ip(Ipv4())) {
    const Outcome outcome = Forward(egress, packet);
    EXPECT_EQ(outcome.fate, Fate::kSent) << outcome.reason;
    EXPECT_EQ(Bytes(outcome.frame.begin(), outcome.frame.begin() + 16), Header());
    return {outcome.frame.begin() + 16, outcome.frame.end()};
  }
  void ExpectStopped(int egress, Fate fate, const std::string& reason) {
    const Outcome outcome = Forward(egress);
    EXPECT_EQ(outcome.fate, fate);
    EXPECT_EQ(outcome.reason, reason);
    EXPECT_EQ(outcome.frame, fate == Fate::kToCpu ? Ipv4() : Bytes{});
    EXPECT_EQ(outcome.port, fate == Fate::kToCpu ? "cpu" : "");
    EXPECT_EQ(outcome.trace.back(), (fate == Fate::kToCpu ? "to the CPU: " : "dropped: ") + reason);
  }

  int intf_ = CreateIntf();
};

TEST_F(ForwardingTest, AHostGetsThePacketInATaggedFrame) {
  EXPECT_EQ(Behind(CreateEgress(intf_)), Joined({0x08, 0x00}, Ipv4()));
  EXPECT_EQ(Forward(CreateEgress(intf_, 1002)).port, "lag2");
  EXPECT_EQ(Forward(CreateEgress(intf_, 0)).port, "cpu");
}

TEST_F(ForwardingTest, SourceAndVlanAreTheInterfacesEvenAfterAnUpdate) {
  const int egress = CreateEgress(intf_);
  unsigned char other_mac[6] = {0x00, 0x00, 0x5e, 0x00, 0x01, 0x07};
  intfs_.UpdateIntf(intf_, 0, 1, 4094, other_mac, 1500, 0);
  EXPECT_EQ(Forward(egress).frame, Joined({0x02, 0x00, 0x00, 0x00, 0x00, 0x0a, 0x00, 0x00, 0x5e, 0x00, 0x01, 0x07, 0x81,
                                           0x00, 0x0f, 0xfe, 0x08, 0x00},
                                          Ipv4()));
}

TEST_F(ForwardingTest, TheLastRecordIsTheOutermostLabelOnTheWire) {
  Push({{kSetTtl | kRemarkExp, 100, 1, 0, 255}, {kSetTtl | kRemarkExp, 200, 1, 0, 255}});
  EXPECT_EQ(Behind(CreateEgress(intf_)), Joined({0x88, 0x47, 0x00, 0x0c, 0x8a, 0xff, 0x00, 0x06, 0x4b, 0xff}, Ipv4()));
}

TEST_F(ForwardingTest, TheEgressObjectsLabelLiesBelowThoseOfTheInitiator) {
  Push({{kSetTtl, 300, 0, 0, 255}});
  EXPECT_EQ(Behind(CreateLabelled(16, EXP_LABEL_CONTROL_SWAP)),
            Joined({0x88, 0x47, 0x00, 0x12, 0xc0, 0xff, 0x00, 0x01, 0x0b, 0x3f}, Ipv4()));
}

TEST_F(ForwardingTest, LabelsOf20BitsFillTheirField) {
  EXPECT_EQ(Behind(CreateLabelled(0xFFFFF, EXP_LABEL_CONTROL_VC)),
            Joined({0x88, 0x47, 0xff, 0xff, 0xfb, 0x3f}, Ipv4()));
}

TEST_F(ForwardingTest, TheEgressObjectsLabelCountsOnlyWithAControlAndWhenThereIsOne) {
  EXPECT_EQ(Behind(CreateLabelled(16, EXP_LABEL_CONTROL_NONE)), Joined({0x08, 0x00}, Ipv4()));
  EXPECT_EQ(Behind(CreateLabelled(kNone, EXP_LABEL_CONTROL_SWAP)), Joined({0x08, 0x00}, Ipv4()));
  EXPECT_EQ(Behind(CreateLabelled(0, EXP_LABEL_CONTROL_SWAP)), Joined({0x88, 0x47, 0x00, 0x00, 0x0b, 0x3f}, Ipv4()));
}

TEST_F(ForwardingTest, AnInitiatorWithoutLabelsPushesNothing) {
  Push({});
  EXPECT_EQ(Behind(CreateEgress(intf_)), Joined({0x08, 0x00}, Ipv4()));
}

TEST_F(ForwardingTest, WithoutFlagsARecordGivesItsOwnExpAndThePacketsTtl) {
  Push({{0, 100, 0, 6, 9}});
  EXPECT_EQ(Behind(CreateEgress(intf_)), Joined({0x88, 0x47, 0x00, 0x06, 0x4d, 0x3f}, Ipv4()));
}

TEST_F(ForwardingTest, Ipv6BringsItsTrafficClassAndHopLimit) {
  Bytes ipv6(40, 0);
  ipv6[0] = 0x6e;
  ipv6[7] = 0x20;
  EXPECT_EQ(Behind(CreateEgress(intf_), Packet::Ip(ipv6)), Joined({0x86, 0xdd}, ipv6));
  EXPECT_EQ(Behind(CreateLabelled(16, EXP_LABEL_CONTROL_VC), Packet::Ip(ipv6)),
            Joined({0x88, 0x47, 0x00, 0x01, 0x0f, 0x20}, ipv6));
}

TEST_F(ForwardingTest, AboveALabelStackNoLabelIsTheBottom) {
  const Packet labelled = {softcard::kEtherTypeMpls, Joined({0x00, 0x02, 0x05, 0x10}, Ipv4())};
  EXPECT_EQ(Behind(CreateLabelled(16, EXP_LABEL_CONTROL_SWAP), labelled),
            Joined({0x88, 0x47, 0x00, 0x01, 0x04, 0x10}, labelled.bytes));
  EXPECT_EQ(Behind(CreateEgress(intf_), labelled), Joined({0x88, 0x47}, labelled.bytes));
}

TEST_F(ForwardingTest, APacketThatIsNoWholeHeaderBringsNeitherExpNorTtl) {
  for (const Bytes& bytes : {Bytes{}, Bytes{0x45}, Bytes{0x60, 0x01}}) {
    EXPECT_EQ(Behind(CreateLabelled(16, EXP_LABEL_CONTROL_VC), Packet::Ip(bytes)),
              Joined({0x88, 0x47, 0x00, 0x01, 0x01, 0xff}, bytes));
  }
}

TEST_F(ForwardingTest, LabelsCountAgainstTheMtu) {
  intfs_.UpdateIntf(intf_, 0, 1, 100, router_mac_, 28, 0);
  Push({{kSetTtl, 100, 0, 0, 255}});
  EXPECT_EQ(Forward(CreateEgress(intf_)).fate, Fate::kSent);
  ExpectStopped(CreateLabelled(16, EXP_LABEL_CONTROL_VC), Fate::kDropped,
                "egress object 100002 would send 32 bytes with labels; the MTU of interface 1 is 28");
}

TEST_F(ForwardingTest, APacketForAnUnknownEgressObjectIsDropped) {
  ExpectStopped(7, Fate::kDropped, "egress object 7 does not exist");
}

TEST_F(ForwardingTest, ADroppingEgressObjectDropsEvenWhatWouldGoToTheCpu) {
  ExpectStopped(CreateWith(intf_, false, true), Fate::kDropped, "egress object 100001 drops");
  ExpectStopped(CreateWith(intf_, true, true), Fate::kDropped, "egress object 100002 drops");
}

TEST_F(ForwardingTest, WithoutAnInterfaceAPacketCanOnlyGoToTheCpu) {
  ExpectStopped(CreateWith(-1, true, false), Fate::kToCpu, "egress object 100001 sends to the CPU");
  ExpectStopped(CreateWith(-1, false, false), Fate::kDropped, "egress object 100002 is bound to no interface");
}

TEST_F(ForwardingTest, ADeletedInterfaceDropsAndSaysSo) {
  const int egress = CreateEgress(intf_);
  intfs_.DeleteIntf(0, intf_);
  ExpectStopped(egress, Fate::kDropped, "egress object 100001 is bound to interface 1, which has been deleted");
}

TEST_F(ForwardingTest, TheTraceTellsEveryTableThatDecided) {
  Push({{kSetTtl | kRemarkExp, 100, 1, 0, 255}});
  EXPECT_EQ(Shown(Forward(CreateLabelled(16, EXP_LABEL_CONTROL_VC)).trace), R"(
egress 100001: intf=1 mac=02:00:00:00:00:0a vlan=100 port=eth3 label=16 to_cpu=false drop=false control=2
intf 1: vrf=1 vlan=100 mac=00:00:5e:00:01:01 mtu=1500 flags=0x0 tunnel=none
initiator 1: labels=[{flags=0x11, label=100, qos_map=1, exp=0, ttl=255}]
push label=100 exp=5 ttl=255
push label=16 exp=5 ttl=63
sent through eth3, 50 bytes
)");
}

TEST_F(ForwardingTest, ForwardingIsNoCall) {
  const int egress = CreateEgress(intf_);
  card_.log().Clear();
  const softcard::Record record(card_.log(), softcard::CallLog::Recording::kAll);
  card_.faults().FailEvery("HwObject::vlan_id", 7);
  Behind(egress);
  EXPECT_EQ(Log(), Lines{});
}

}  // namespace
