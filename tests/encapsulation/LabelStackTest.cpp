#include <cstdio>

#include "src/encapsulation/HalL3MplsEncapsulationBcm.h"
#include "tests/encapsulation/ModuleTest.h"

namespace {

class LabelStackTest : public ModuleTest {
 protected:
  bool Check(const Labels& labels, const Capabilities& capabilities) {
    return bcm_.CheckMplsVectorEntries(labels, capabilities);
  }

  /// "2: <record 0> <record 1>", a record by its fields: flags/label/qos_map_id/exp/ttl.
  std::string Fill(en_HalMplsCapabilities capability, const Labels& labels) {
    bcm_mpls_egress_label_t records[2];
    const int count = bcm_.FillMplsLabels(capability, &records[0], &records[1], labels);
    std::string text = std::to_string(count) + ":";
    for (const bcm_mpls_egress_label_t& record : records) {
      char fields[64];
      std::snprintf(fields, sizeof(fields), " %x/%u/%d/%d/%d", record.flags, record.label, record.qos_map_id,
                    record.exp, record.ttl);
      text += fields;
    }
    return text;
  }

  const HalL3MplsEncapsulationBcm& bcm_ = *HalL3MplsEncapsulationBcm::GetInstance();
  static constexpr auto kSix = static_cast<en_HalMplsCapabilities>(6);
  static constexpr auto kMinusOne = static_cast<en_HalMplsCapabilities>(-1);
};

constexpr auto kNone = HAL_MPLS_CAPABILITY_NONE;
constexpr auto kProtection = HAL_MPLS_CAPABILITY_PROTECTION;
constexpr auto kSwap = HAL_MPLS_CAPABILITY_SWAP;
constexpr auto kForward = HAL_MPLS_CAPABILITY_FORWARD;
constexpr auto kPush = HAL_MPLS_CAPABILITY_PUSH;
constexpr auto kVcLabel = HAL_MPLS_CAPABILITY_VC_LABEL;

TEST_F(LabelStackTest, RequestWithoutACapabilityIsRejected) {
  EXPECT_FALSE(Check({100}, {}));
  EXPECT_EQ(Trace(), "\nlog 4: No capability provided! Returning false.\n");
}

TEST_F(LabelStackTest, ProtectionIsNoticedOncePerEntryAndNotCounted) {
  EXPECT_FALSE(Check({}, {kProtection}));
  EXPECT_TRUE(Check({100}, {kProtection, kPush, kProtection}));
  EXPECT_EQ(Trace(), R"(
log 6: Tunnel Mpls Protection is not available and it will be ignored!
log 4: Invalid counter action (0) to configure mpls tunnel! Returning false.
log 6: Tunnel Mpls Protection is not available and it will be ignored!
log 6: Tunnel Mpls Protection is not available and it will be ignored!
)");
}

TEST_F(LabelStackTest, WalkCountsAllCapabilitiesBeforeItRejectsMoreThanOne) {
  EXPECT_FALSE(Check({100}, {kPush, kSwap}));
  EXPECT_FALSE(Check({100}, {kForward, kNone, kSix, kVcLabel}));
  EXPECT_EQ(Trace(), R"(
log 4: Invalid counter action (2) to configure mpls tunnel! Returning false.
log 4: Invalid counter action (4) to configure mpls tunnel! Returning false.
)");
}

TEST_F(LabelStackTest, PushAndVcLabelNeedLabelsAndEndTheWalk) {
  EXPECT_FALSE(Check({}, {kPush, kProtection}));
  EXPECT_FALSE(Check({}, {kVcLabel, kProtection}));
  EXPECT_EQ(Trace(), R"(
log 4: Push action without labels! Returning false.
log 4: VC label action without labels! Returning false.
)");
}

TEST_F(LabelStackTest, OtherCapabilitiesNeedNoLabels) {
  for (const en_HalMplsCapabilities capability : {kNone, kSwap, kForward, kSix, kMinusOne}) {
    EXPECT_TRUE(Check({}, {capability})) << capability;
  }
  EXPECT_EQ(Trace(), "\n");
}

TEST_F(LabelStackTest, TwoPushedLabelsFillBothRecordsAndTheFirstLinePrintsTheSecond) {
  EXPECT_EQ(Fill(kPush, {100, 200}), "2: 11/100/1/0/255 11/200/1/0/255");
  EXPECT_EQ(Trace(), R"(
log 7: FillMplsLabels - MPLS Capability(Push), labels size is 2
HalBcmCommon::GetMplsExpMapId() = 1
bcm_mpls_egress_label_t_init()
bcm_mpls_egress_label_t_init()
log 7: Tunnel Label 0 is 200
log 7: Tunnel Label 1 is 200
)");
}

TEST_F(LabelStackTest, SinglePushedLabelPrintsZeroForTheMissingSecond) {
  EXPECT_EQ(Fill(kPush, {100}), "1: 11/100/1/0/255 0/0/0/0/0");
  EXPECT_EQ(LastLine(), "log 7: Tunnel Label 0 is 0");
}

TEST_F(LabelStackTest, ReservedFirstLabelMovesTheSecondIntoRecordZero) {
  EXPECT_EQ(Fill(kPush, {3, 200}), "1: 11/200/1/0/255 0/0/0/0/0");
  EXPECT_EQ(LastLine(), "log 7: Tunnel Label 0 is 200");
  EXPECT_EQ(Fill(kPush, {0, 200, 300}), "1: 11/200/1/0/255 0/0/0/0/0");
}

TEST_F(LabelStackTest, ReservedSecondLabelIsNoLabelAndTheThirdIsIgnored) {
  EXPECT_EQ(Fill(kPush, {100, 3, 300}), "1: 11/100/1/0/255 0/0/0/0/0");
  EXPECT_EQ(LastLine(), "log 7: Tunnel Label 0 is 3");
  EXPECT_EQ(Fill(kPush, {100, 0}), "1: 11/100/1/0/255 0/0/0/0/0");
}

TEST_F(LabelStackTest, PushWithoutARealLabelStillMarksRecordZero) {
  for (const Labels& labels : {Labels{0}, Labels{3}, Labels{0, 3}, Labels{}}) {
    EXPECT_EQ(Fill(kPush, labels), "0: 11/0/1/0/255 0/0/0/0/0");
  }
}

TEST_F(LabelStackTest, SwapTakesTheSecondLabelWithoutAnExpMap) {
  EXPECT_EQ(Fill(kSwap, {16, 300}), "1: 1/300/0/0/255 0/0/0/0/0");
  EXPECT_EQ(Trace(), R"(
log 7: FillMplsLabels - MPLS Capability(Swap), labels size is 2
HalBcmCommon::GetMplsExpMapId() = 1
bcm_mpls_egress_label_t_init()
bcm_mpls_egress_label_t_init()
log 7: Tunnel Label 0 is 300
)");
}

TEST_F(LabelStackTest, SwapWithoutASecondLabelFillsNothing) {
  for (const Labels& labels : {Labels{16, 0}, Labels{16, 3}, Labels{16}, Labels{}}) {
    EXPECT_EQ(Fill(kSwap, labels), "0: 1/0/0/0/255 0/0/0/0/0");
  }
}

TEST_F(LabelStackTest, EveryOtherCapabilityFillsNothingAndStillAsksForTheExpMap) {
  struct Case {
    en_HalMplsCapabilities capability;
    const char* name;
  };
  for (const Case& c : {Case{kNone, "None"}, Case{kProtection, "Protection"}, Case{kForward, "Forward"},
                        Case{kVcLabel, "VCLabel"}, Case{kSix, "Unknown"}, Case{kMinusOne, "Unknown"}}) {
    EXPECT_EQ(Fill(c.capability, {100, 200}), "0: 1/0/0/0/255 0/0/0/0/0");
    EXPECT_EQ(Trace(), "\nlog 7: FillMplsLabels - MPLS Capability(" + std::string(c.name) + R"(), labels size is 2
HalBcmCommon::GetMplsExpMapId() = 1
bcm_mpls_egress_label_t_init()
bcm_mpls_egress_label_t_init()
)");
  }
}

TEST_F(LabelStackTest, LabelsAbove20BitsAreHandedOnAsTheyAre) {
  EXPECT_EQ(Fill(kPush, {0x100000, 0xFFFFFFFF}), "2: 11/1048576/1/0/255 11/4294967295/1/0/255");
  EXPECT_EQ(LastLine(), "log 7: Tunnel Label 1 is -1");
}

TEST_F(LabelStackTest, InitiatorIsSetAfterTheTunnelObjectWasWritten) {
  InstallVlan();
  EXPECT_EQ(bcm_.SetMplsTunnelInitiator(kPush, 1, {100, 200}), 0);
  EXPECT_EQ(Trace(), R"(
log 7: FillMplsLabels - MPLS Capability(Push), labels size is 2
HalBcmCommon::GetMplsExpMapId() = 1
bcm_mpls_egress_label_t_init()
bcm_mpls_egress_label_t_init()
log 7: Tunnel Label 0 is 200
log 7: Tunnel Label 1 is 200
IntfManager::GetIntfObject(intf=1) = true
TunnelObject::set_ttl(ttl=255)
TunnelObject::set_type(type=mpls)
TunnelObject::set_mpls_capability(capability=4)
bcm_mpls_tunnel_initiator_set(unit=0, intf=1, num_labels=2, labels=[{flags=0x11, label=100, qos_map=1, exp=0, ttl=255}, {flags=0x11, label=200, qos_map=1, exp=0, ttl=255}]) = 0
)");
}

TEST_F(LabelStackTest, InitiatorIsSetWithNoLabelToo) {
  InstallVlan();
  EXPECT_EQ(bcm_.SetMplsTunnelInitiator(kForward, 1, {100}), 0);
  EXPECT_EQ(LastLine(), "bcm_mpls_tunnel_initiator_set(unit=0, intf=1, num_labels=0, labels=[]) = 0");
}

TEST_F(LabelStackTest, InitiatorOfAnUnknownInterfaceIsNotFoundSilently) {
  EXPECT_EQ(bcm_.SetMplsTunnelInitiator(kForward, 5, {}), BCM_E_NOT_FOUND);
  EXPECT_EQ(LastLine(), "IntfManager::GetIntfObject(intf=5) = false");
}

TEST_F(LabelStackTest, RefusedInitiatorIsLoggedAndLeavesTheTunnelObjectWritten) {
  InstallVlan();
  faults().FailNth("bcm_mpls_tunnel_initiator_set", 1, BCM_E_RESOURCE);
  EXPECT_EQ(bcm_.SetMplsTunnelInitiator(kPush, 1, {100}), BCM_E_RESOURCE);
  EXPECT_EQ(LastLine(), "log 3: Error setting tunnel initiator (intf id(1), rv=-14)");
  EXPECT_NE(Rows("intfs").find("tunnel=mpls"), std::string::npos);
}

TEST_F(LabelStackTest, PositiveStatusOfTheInitiatorIsHandedBack) {
  InstallVlan();
  faults().FailNth("bcm_mpls_tunnel_initiator_set", 1, 2);
  EXPECT_EQ(bcm_.SetMplsTunnelInitiator(kPush, 1, {100}), 2);
  faults().FailNth("bcm_mpls_tunnel_initiator_clear", 1, 3);
  EXPECT_EQ(bcm_.ClearMplsTunnelInitiator(1), 3);
  EXPECT_EQ(LastLine(), "bcm_mpls_tunnel_initiator_clear(unit=0, intf=1) = 3");
}

TEST_F(LabelStackTest, ClearOfAnInterfaceWithoutInitiatorIsSilentAndYetItsStatus) {
  EXPECT_EQ(bcm_.ClearMplsTunnelInitiator(1), BCM_E_UNAVAIL);
  EXPECT_EQ(LastLine(), "bcm_mpls_tunnel_initiator_clear(unit=0, intf=1) = -16 (Unavailable)");
}

TEST_F(LabelStackTest, RefusedClearIsLogged) {
  faults().FailNth("bcm_mpls_tunnel_initiator_clear", 1, BCM_E_NOT_FOUND);
  EXPECT_EQ(bcm_.ClearMplsTunnelInitiator(-1), BCM_E_NOT_FOUND);
  EXPECT_EQ(LastLine(), "log 3: Error clearing tunnel initiator (intf id(4294967295), rv=-7)");
}

}  // namespace
