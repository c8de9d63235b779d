#include "hal/EgressManager.h"
#include "hal/IntfManager.h"
#include "src/encapsulation/HalL3MplsEncapsulationBcm.h"
#include "tests/encapsulation/ModuleTest.h"

namespace {

constexpr auto kMplsTunnel = TunnelObject::kTunnelTypeMpls;
constexpr auto kNoTunnel = TunnelObject::kTunnelTypeNone;

/// The tunnels alone, on interface 1 of VLAN 100, towards port 2.
class TunnelsTest : public ModuleTest {
 protected:
  TunnelsTest() {
    InstallVlan();
    IntfManager intf_manager;
    intf_manager.GetIntfObject(1, &base_);
    Forget();
  }

  bool InstallPush(const Labels& labels = {100, 200}, en_HalMplsCapabilities capability = kPush) {
    return bcm_.InstallMplsForwardPushTunnel(capability, base_, 2, host_mac_, labels, &intf_id_, &egress_id_, false);
  }
  bool ReplacePush(const Labels& labels = {300, 400}) {
    return bcm_.ReplaceMplsForwardPushTunnel(kPush, base_, 3, other_mac_, labels, &intf_id_, &egress_id_, false);
  }
  bool InstallSwap(const Labels& labels) {
    return bcm_.InstallMplsSwapTunnel(base_, 2, host_mac_, labels, &intf_id_, &egress_id_, false);
  }
  bool ReplaceSwap(TunnelObject::EnumTunnelType old_type, const Labels& labels) {
    return bcm_.ReplaceMplsSwapTunnel(base_, old_type, 3, other_mac_, labels, &intf_id_, &egress_id_, false);
  }
  bool InstallVc(const Labels& labels, bool drop = false) {
    return bcm_.InstallMplsVCTunnel(base_, 2, host_mac_, labels, &egress_id_, drop);
  }
  bool ReplaceVc(const Labels& labels, bool drop = false) {
    return bcm_.ReplaceMplsVCTunnel(base_, 3, other_mac_, labels, &egress_id_, drop);
  }

  /// The trace without what fills the labels and writes the tunnel object, which tests of their own show.
  std::string Calls() {
    std::string text = "\n";
    for (const std::string& line : card_.log().Lines()) {
      const bool shown = line.find("bcm_mpls_egress_label_t_init") == std::string::npos &&
                         line.find("GetMplsExpMapId") == std::string::npos && line.find("TunnelObject::set_") != 0 &&
                         line.find("FillMplsLabels") == std::string::npos &&
                         line.find("Tunnel Label") == std::string::npos && line.find("IntfManager::GetIntfObject") != 0;
      text += shown ? line + "\n" : "";
    }
    Forget();
    return text;
  }

  const HalL3MplsEncapsulationBcm& bcm_ = *HalL3MplsEncapsulationBcm::GetInstance();
  IntfObject* base_ = nullptr;
  int intf_id_ = 1;
  int egress_id_ = 0;
};

TEST_F(TunnelsTest, VcInstallCarriesTheFirstLabelInTheEgressObject) {
  EXPECT_TRUE(InstallVc({500, 600}));
  EXPECT_EQ(Trace(), R"(
log 7: Installing tunnel outgoing encapsulation for MPLS Capability(VCLabel): 500 (Total labels informed: 2)
EgressManager::CreateEgress(intf=1, mac=02:00:00:00:00:09, vlan=100, unit=0, port=2, label=500, to_cpu=false, drop=false, control=2) = 100001
)");
  EXPECT_EQ(egress_id_, 100001);
}

TEST_F(TunnelsTest, VcReplaceUpdatesTheEgressObject) {
  InstallVc({500});
  Forget();
  EXPECT_TRUE(ReplaceVc({0}));
  EXPECT_EQ(Trace(), R"(
log 7: Updating tunnel outgoing encapsulation for MPLS Capability(VCLabel): 0 (Total labels informed: 1)
EgressManager::UpdateEgress(egress=100001, intf=1, mac=00:00:5e:00:01:02, vlan=100, unit=0, port=3, label=0, to_cpu=false, drop=false, control=2) = 0
)");
}

TEST_F(TunnelsTest, VcWithImplicitNullIsInvalidAndNothingIsMade) {
  EXPECT_FALSE(InstallVc({3, 100}));
  EXPECT_FALSE(ReplaceVc({3}));
  EXPECT_EQ(Trace(), "\nlog 3: Invalid label informed!\nlog 3: Invalid label informed!\n");
  EXPECT_EQ(Rows("egresses"), "\n");
}

TEST_F(TunnelsTest, VcWithoutALabelReadsNothingBeyondTheVectorAndCarriesNone) {
  EXPECT_TRUE(InstallVc({}));
  EXPECT_NE(Trace().find("label=none, to_cpu=false, drop=false, control=2"), std::string::npos);
  EXPECT_TRUE(ReplaceVc({}));
  EXPECT_NE(Trace().find("label=none, to_cpu=false, drop=false, control=2"), std::string::npos);
}

TEST_F(TunnelsTest, VcFailuresAreLoggedAndTheInstallsEgressIdIsWritten) {
  faults().FailNth("EgressManager::CreateEgress", 1, BCM_E_FULL);
  EXPECT_FALSE(InstallVc({500}));
  EXPECT_EQ(LastLine(), "log 3: Error creating an egress for tunnel MPLS Capability(VCLabel)!");
  EXPECT_EQ(egress_id_, BCM_E_FULL);
  egress_id_ = 7;
  EXPECT_FALSE(ReplaceVc({500}));
  EXPECT_EQ(LastLine(), "log 3: Error updating an egress for tunnel MPLS Capability(VCLabel)!");
  EXPECT_EQ(egress_id_, 7);
}

TEST_F(TunnelsTest, DropGoesIntoTheSecondBooleanOfEveryEgressCall) {
  EXPECT_TRUE(InstallVc({500}, true));
  EXPECT_NE(Trace().find("to_cpu=false, drop=true"), std::string::npos);
  EXPECT_TRUE(ReplaceVc({500}, true));
  EXPECT_NE(Trace().find("to_cpu=false, drop=true"), std::string::npos);
  EXPECT_TRUE(bcm_.InstallMplsSwapTunnel(base_, -18, host_mac_, {16}, &intf_id_, &egress_id_, true));
  EXPECT_NE(Trace().find("port=-18, label=16, to_cpu=false, drop=true, control=1"), std::string::npos);
  EXPECT_TRUE(bcm_.ReplaceMplsSwapTunnel(base_, kNoTunnel, -18, host_mac_, {17}, &intf_id_, &egress_id_, true));
  EXPECT_NE(Trace().find("port=-18, label=17, to_cpu=false, drop=true, control=1"), std::string::npos);
  EXPECT_TRUE(bcm_.InstallMplsForwardPushTunnel(kPush, base_, -18, host_mac_, {16}, &intf_id_, &egress_id_, true));
  EXPECT_NE(Trace().find("port=-18, label=none, to_cpu=false, drop=true, control=0"), std::string::npos);
  EXPECT_TRUE(bcm_.ReplaceMplsForwardPushTunnel(kPush, base_, -18, host_mac_, {16}, &intf_id_, &egress_id_, true));
  EXPECT_NE(Trace().find("port=-18, label=0, to_cpu=false, drop=true, control=0"), std::string::npos);
}

TEST_F(TunnelsTest, PushInstallMakesInterfaceInitiatorAndEgressObject) {
  EXPECT_TRUE(InstallPush());
  EXPECT_EQ(Calls(), R"(
log 7: Installing tunnel outgoing encapsulation for MPLS Capability(Push)
IntfManager::CreateIntf(unit=0, vrf=1, vlan=100, mac=00:00:5e:00:01:01, mtu=1500, flags=0x0) = 2
bcm_mpls_tunnel_initiator_set(unit=0, intf=2, num_labels=2, labels=[{flags=0x11, label=100, qos_map=1, exp=0, ttl=255}, {flags=0x11, label=200, qos_map=1, exp=0, ttl=255}]) = 0
EgressManager::CreateEgress(intf=2, mac=02:00:00:00:00:09, vlan=100, unit=0, port=2, label=none, to_cpu=false, drop=false, control=0) = 100001
)");
  EXPECT_EQ(intf_id_, 2);
  EXPECT_EQ(egress_id_, 100001);
}

TEST_F(TunnelsTest, ForwardInstallSetsAnInitiatorThatPushesNothing) {
  EXPECT_TRUE(InstallPush({100}, kForward));
  const std::string calls = Calls();
  EXPECT_NE(calls.find("encapsulation for MPLS Capability(Forward)\n"), std::string::npos);
  EXPECT_NE(calls.find("bcm_mpls_tunnel_initiator_set(unit=0, intf=2, num_labels=0, labels=[]) = 0"),
            std::string::npos);
}

TEST_F(TunnelsTest, PushInstallWithoutAnInterfaceStopsThere) {
  faults().FailNth("IntfManager::CreateIntf", 1, BCM_E_FULL);
  EXPECT_FALSE(InstallPush());
  EXPECT_EQ(LastLine(), "log 3: Error creating an intf for tunnel MPLS Capability(Push)!");
  EXPECT_EQ(intf_id_, BCM_E_FULL);
}

TEST_F(TunnelsTest, PushInstallWhoseInitiatorIsRefusedDeletesTheInterface) {
  faults().FailNth("bcm_mpls_tunnel_initiator_set", 1, BCM_E_FULL);
  EXPECT_FALSE(InstallPush());
  const std::string calls = Calls();
  EXPECT_EQ(calls.substr(calls.find("\nlog 3")), R"(
log 3: Error setting tunnel initiator (intf id(2), rv=-6)
IntfManager::DeleteIntf(unit=0, intf=2) = 0
)");
}

TEST_F(TunnelsTest, PushInstallWhoseInterfaceVanishedDeletesItSilently) {
  faults().FailNth("IntfManager::GetIntfObject", 1, 0);
  EXPECT_FALSE(InstallPush());
  EXPECT_EQ(LastLine(), "IntfManager::DeleteIntf(unit=0, intf=2) = 0");
  EXPECT_EQ(Trace().find("log 3"), std::string::npos);
}

TEST_F(TunnelsTest, PushInstallWhoseEgressIsRefusedUndoesItsOwnInitiatorAndInterface) {
  faults().FailNth("EgressManager::CreateEgress", 1, BCM_E_FULL);
  faults().FailNth("bcm_mpls_tunnel_initiator_clear", 1, BCM_E_TIMEOUT);
  faults().FailNth("IntfManager::DeleteIntf", 1, BCM_E_TIMEOUT);
  EXPECT_FALSE(InstallPush());
  const std::string calls = Calls();
  EXPECT_EQ(calls.substr(calls.find("\nbcm_mpls_tunnel_initiator_clear")), R"(
bcm_mpls_tunnel_initiator_clear(unit=0, intf=2) = -9 (Timed out)
log 3: Error clearing tunnel initiator (intf id(2), rv=-9)
IntfManager::DeleteIntf(unit=0, intf=2) = -9 (Timed out)
log 3: Error creating an egress for tunnel MPLS Capability(Push)!
)");
}

TEST_F(TunnelsTest, PushReplaceClearsUpdatesSetsAndPassesLabelZero) {
  InstallPush();
  Forget();
  EXPECT_TRUE(ReplacePush());
  EXPECT_EQ(Calls(), R"(
log 7: Updating tunnel outgoing encapsulation for MPLS Capability(Push).
bcm_mpls_tunnel_initiator_clear(unit=0, intf=2) = 0
IntfManager::UpdateIntf(intf=2, unit=0, vrf=1, vlan=100, mac=00:00:5e:00:01:01, mtu=1500, flags=0x0) = 2
bcm_mpls_tunnel_initiator_set(unit=0, intf=2, num_labels=2, labels=[{flags=0x11, label=300, qos_map=1, exp=0, ttl=255}, {flags=0x11, label=400, qos_map=1, exp=0, ttl=255}]) = 0
EgressManager::UpdateEgress(egress=100001, intf=2, mac=00:00:5e:00:01:02, vlan=100, unit=0, port=3, label=0, to_cpu=false, drop=false, control=0) = 0
)");
}

TEST_F(TunnelsTest, PushReplaceOnAnInterfaceWithoutInitiatorFailsSilently) {
  EXPECT_FALSE(ReplacePush());
  EXPECT_EQ(Trace(), R"(
log 7: Updating tunnel outgoing encapsulation for MPLS Capability(Push).
bcm_mpls_tunnel_initiator_clear(unit=0, intf=1) = -16 (Unavailable)
)");
}

TEST_F(TunnelsTest, PushReplaceUndoesNothing) {
  InstallPush();
  faults().FailNth("IntfManager::UpdateIntf", 1, BCM_E_FAIL);
  EXPECT_FALSE(ReplacePush());
  EXPECT_EQ(LastLine(), "log 3: Error updating an intf for tunnel MPLS Capability(Push)!");
  EXPECT_EQ(intf_id_, BCM_E_FAIL);

  intf_id_ = 1;
  InstallPush();
  faults().FailNth("bcm_mpls_tunnel_initiator_set", 1, BCM_E_FULL);
  EXPECT_FALSE(ReplacePush());
  EXPECT_EQ(LastLine(), "log 3: Error setting tunnel initiator (intf id(3), rv=-6)");

  InstallPush();
  faults().FailNth("EgressManager::UpdateEgress", 1, BCM_E_FULL);
  EXPECT_FALSE(ReplacePush());
  EXPECT_EQ(LastLine(), "log 3: Error updating an egress for tunnel MPLS Capability(Push)!");
}

TEST_F(TunnelsTest, PushReplaceGoesOnWithTheInterfaceIdOfTheUpdate) {
  InstallPush();
  InstallPush();
  intf_id_ = 2;
  faults().FailNth("IntfManager::UpdateIntf", 1, 3);
  EXPECT_TRUE(ReplacePush());
  EXPECT_EQ(intf_id_, 3);
  EXPECT_EQ(LastLine().find("EgressManager::UpdateEgress(egress=100002, intf=3, "), 0U);
}

TEST_F(TunnelsTest, SwapInstallWithOneLabelUsesTheGivenInterface) {
  EXPECT_TRUE(InstallSwap({16}));
  EXPECT_EQ(Trace(), R"(
log 7: Installing tunnel outgoing encapsulation for MPLS Capability(Swap)
EgressManager::CreateEgress(intf=1, mac=02:00:00:00:00:09, vlan=100, unit=0, port=2, label=16, to_cpu=false, drop=false, control=1) = 100001
)");
  EXPECT_EQ(intf_id_, 1);
}

TEST_F(TunnelsTest, SwapWithoutARealLabelCarriesNoneButZeroIsOne) {
  InstallSwap({});
  EXPECT_NE(LastLine().find("label=none, "), std::string::npos);
  InstallSwap({3});
  EXPECT_NE(LastLine().find("label=none, "), std::string::npos);
  InstallSwap({0});
  EXPECT_NE(LastLine().find("label=0, "), std::string::npos);
}

TEST_F(TunnelsTest, SwapInstallWithATunnelLabelPushesItOnAnInterfaceOfItsOwn) {
  EXPECT_TRUE(InstallSwap({16, 300}));
  EXPECT_EQ(Calls(), R"(
log 7: Installing tunnel outgoing encapsulation for MPLS Capability(Swap)
IntfManager::CreateIntf(unit=0, vrf=1, vlan=100, mac=00:00:5e:00:01:01, mtu=1500, flags=0x0) = 2
bcm_mpls_tunnel_initiator_set(unit=0, intf=2, num_labels=1, labels=[{flags=0x1, label=300, qos_map=0, exp=0, ttl=255}]) = 0
EgressManager::CreateEgress(intf=2, mac=02:00:00:00:00:09, vlan=100, unit=0, port=2, label=16, to_cpu=false, drop=false, control=1) = 100001
)");
  EXPECT_EQ(intf_id_, 2);
}

TEST_F(TunnelsTest, SwapInstallWithoutInterfaceOrInitiatorStopsThere) {
  faults().FailNth("IntfManager::CreateIntf", 1, BCM_E_FULL);
  EXPECT_FALSE(InstallSwap({16, 300}));
  EXPECT_EQ(LastLine(), "log 3: Error creating an intf for tunnel MPLS Capability(Swap)!");
  faults().FailNth("bcm_mpls_tunnel_initiator_set", 1, BCM_E_FULL);
  EXPECT_FALSE(InstallSwap({16, 300}));
  EXPECT_EQ(LastLine(), "IntfManager::DeleteIntf(unit=0, intf=2) = 0");
}

TEST_F(TunnelsTest, SwapInstallWhoseEgressIsRefusedClearsTheInitiatorOfTheInterfaceToLeaveThrough) {
  faults().FailNth("EgressManager::CreateEgress", 1, BCM_E_FULL);
  EXPECT_FALSE(InstallSwap({16, 300}));
  const std::string calls = Calls();
  EXPECT_EQ(calls.substr(calls.find("\nbcm_mpls_tunnel_initiator_clear")), R"(
bcm_mpls_tunnel_initiator_clear(unit=0, intf=1) = -16 (Unavailable)
IntfManager::DeleteIntf(unit=0, intf=2) = 0
log 3: Error creating an egress for tunnel MPLS Capability(Swap)!
)");
  faults().FailNth("EgressManager::CreateEgress", 1, BCM_E_FULL);
  EXPECT_FALSE(InstallSwap({16}));
  EXPECT_EQ(Trace().find("initiator_clear"), std::string::npos);
}

TEST_F(TunnelsTest, SwapReplaceFromATunnelToOneLabelMakesTheEgressAnewAndIsTrueWhateverBecomesOfIt) {
  InstallSwap({16, 300});
  Forget();
  EXPECT_TRUE(ReplaceSwap(kMplsTunnel, {17}));
  EXPECT_EQ(Trace(), R"(
log 7: Updating tunnel outgoing encapsulation for MPLS Capability(Swap). Old tunnel type is mpls and labels size is 1
bcm_mpls_tunnel_initiator_clear(unit=0, intf=2) = 0
EgressManager::DeleteEgress(egress=100001) = 0
IntfManager::DeleteIntf(unit=0, intf=2) = 0
log 7: Installing tunnel outgoing encapsulation for MPLS Capability(Swap)
EgressManager::CreateEgress(intf=1, mac=00:00:5e:00:01:02, vlan=100, unit=0, port=3, label=17, to_cpu=false, drop=false, control=1) = 100002
)");
  EXPECT_EQ(intf_id_, 1);

  InstallSwap({16, 300});
  const softcard::Record record(card_.log(), softcard::CallLog::Recording::kAll);
  Forget();
  EXPECT_TRUE(ReplaceSwap(kMplsTunnel, {17}));
  std::string order = "\n";
  for (const std::string& line : card_.log().Lines()) {
    for (const char* const name :
         {"initiator_clear", "IntfObject::", "HwObject::", "DeleteEgress", "DeleteIntf", "CreateEgress"}) {
      order += line.find(name) != std::string::npos ? line.substr(0, line.find('(')) + "\n" : "";
    }
  }
  EXPECT_EQ(order, R"(
bcm_mpls_tunnel_initiator_clear
IntfObject::id
HwObject::vlan_id
EgressManager::DeleteEgress
IntfManager::DeleteIntf
EgressManager::CreateEgress
)") << "the base is read before it may go, and not again";

  InstallSwap({16, 300});
  faults().FailNth("EgressManager::CreateEgress", 1, BCM_E_FULL);
  EXPECT_TRUE(ReplaceSwap(kMplsTunnel, {}));
  EXPECT_EQ(egress_id_, BCM_E_FULL);
  EXPECT_EQ(intf_id_, 1);
}

TEST_F(TunnelsTest, SwapReplaceOnATunnelKeepsItsInterface) {
  InstallSwap({16, 300});
  Forget();
  EXPECT_TRUE(ReplaceSwap(kMplsTunnel, {3, 301}));
  EXPECT_EQ(Calls(), R"(
log 7: Updating tunnel outgoing encapsulation for MPLS Capability(Swap). Old tunnel type is mpls and labels size is 2
bcm_mpls_tunnel_initiator_clear(unit=0, intf=2) = 0
IntfManager::UpdateIntf(intf=2, unit=0, vrf=1, vlan=100, mac=00:00:5e:00:01:01, mtu=1500, flags=0x0) = 2
bcm_mpls_tunnel_initiator_set(unit=0, intf=2, num_labels=1, labels=[{flags=0x1, label=301, qos_map=0, exp=0, ttl=255}]) = 0
EgressManager::UpdateEgress(egress=100001, intf=2, mac=00:00:5e:00:01:02, vlan=100, unit=0, port=3, label=none, to_cpu=false, drop=false, control=1) = 0
)");
  ReplaceSwap(kMplsTunnel, {0, 301});
  EXPECT_NE(LastLine().find("EgressManager::UpdateEgress(egress=100001, "), std::string::npos);
  EXPECT_NE(LastLine().find("label=0, "), std::string::npos);
}

TEST_F(TunnelsTest, SwapReplaceOnATunnelUndoesNothing) {
  InstallSwap({16, 300});
  faults().FailNth("bcm_mpls_tunnel_initiator_clear", 1, BCM_E_UNAVAIL);
  Forget();
  EXPECT_FALSE(ReplaceSwap(kMplsTunnel, {17, 301}));
  EXPECT_EQ(LastLine(), "bcm_mpls_tunnel_initiator_clear(unit=0, intf=2) = -16 (Unavailable)");
  faults().FailNth("bcm_mpls_tunnel_initiator_set", 1, BCM_E_FULL);
  EXPECT_FALSE(ReplaceSwap(kMplsTunnel, {17, 301}));
  EXPECT_EQ(LastLine(), "log 3: Error setting tunnel initiator (intf id(2), rv=-6)");

  InstallSwap({16, 300});
  faults().FailNth("EgressManager::UpdateEgress", 1, BCM_E_FULL);
  EXPECT_FALSE(ReplaceSwap(kMplsTunnel, {17, 301}));
  EXPECT_EQ(LastLine(), "log 3: Error updating an egress for tunnel MPLS Capability(Swap)!");

  InstallSwap({16, 300});
  faults().FailNth("IntfManager::UpdateIntf", 1, BCM_E_FAIL);
  EXPECT_FALSE(ReplaceSwap(kMplsTunnel, {17, 301}));
  EXPECT_EQ(LastLine(), "log 3: Error updating an intf for tunnel MPLS Capability(Swap)!");
  EXPECT_EQ(intf_id_, BCM_E_FAIL);
}

TEST_F(TunnelsTest, SwapReplaceIntoATunnelMakesTheInterface) {
  InstallSwap({16});
  Forget();
  EXPECT_TRUE(ReplaceSwap(kNoTunnel, {17, 301}));
  EXPECT_EQ(Calls(), R"(
log 7: Updating tunnel outgoing encapsulation for MPLS Capability(Swap). Old tunnel type is none and labels size is 2
IntfManager::CreateIntf(unit=0, vrf=1, vlan=100, mac=00:00:5e:00:01:01, mtu=1500, flags=0x0) = 2
bcm_mpls_tunnel_initiator_set(unit=0, intf=2, num_labels=1, labels=[{flags=0x1, label=301, qos_map=0, exp=0, ttl=255}]) = 0
EgressManager::UpdateEgress(egress=100001, intf=2, mac=00:00:5e:00:01:02, vlan=100, unit=0, port=3, label=17, to_cpu=false, drop=false, control=1) = 0
)");
  EXPECT_EQ(intf_id_, 2);
}

TEST_F(TunnelsTest, SwapReplaceIntoATunnelTakesTheNewInterfaceBack) {
  InstallSwap({16});
  faults().FailNth("IntfManager::CreateIntf", 1, BCM_E_FULL);
  EXPECT_FALSE(ReplaceSwap(kNoTunnel, {17, 301}));
  // "updating", though it was to be created.
  EXPECT_EQ(LastLine(), "log 3: Error updating an intf for tunnel MPLS Capability(Swap)!");

  faults().FailNth("bcm_mpls_tunnel_initiator_set", 1, BCM_E_FULL);
  EXPECT_FALSE(ReplaceSwap(kNoTunnel, {17, 301}));
  std::string calls = Calls();
  EXPECT_EQ(calls.substr(calls.find("\nlog 3: Error setting")), R"(
log 3: Error setting tunnel initiator (intf id(2), rv=-6)
IntfManager::DeleteIntf(unit=0, intf=2) = 0
)");

  faults().FailNth("EgressManager::UpdateEgress", 1, BCM_E_FULL);
  EXPECT_FALSE(ReplaceSwap(kNoTunnel, {17, 301}));
  calls = Calls();
  const std::string new_intf = std::to_string(intf_id_);
  EXPECT_EQ(calls.substr(calls.find("\nlog 3: Error updating")),
            "\nlog 3: Error updating an egress for tunnel MPLS Capability(Swap)!\n"
            "bcm_mpls_tunnel_initiator_clear(unit=0, intf=" +
                new_intf +
                ") = 0\n"
                "IntfManager::DeleteIntf(unit=0, intf=" +
                new_intf + ") = 0\n");
}

TEST_F(TunnelsTest, SwapReplaceWithoutATunnelUpdatesTheEgressObject) {
  InstallSwap({16});
  Forget();
  EXPECT_TRUE(ReplaceSwap(kNoTunnel, {17}));
  EXPECT_EQ(Trace(), R"(
log 7: Updating tunnel outgoing encapsulation for MPLS Capability(Swap). Old tunnel type is none and labels size is 1
EgressManager::UpdateEgress(egress=100001, intf=1, mac=00:00:5e:00:01:02, vlan=100, unit=0, port=3, label=17, to_cpu=false, drop=false, control=1) = 0
)");
  for (const Labels& labels : {Labels{}, Labels{3}}) {
    EXPECT_TRUE(ReplaceSwap(kNoTunnel, labels));
    EXPECT_NE(LastLine().find("UpdateEgress(egress=100001, "), std::string::npos);
    EXPECT_NE(LastLine().find("label=none, "), std::string::npos);
  }
}

TEST_F(TunnelsTest, SwapReplaceSaysWhenItMovesToAnotherInterface) {
  InstallSwap({16});
  intf_id_ = 7;
  Forget();
  EXPECT_TRUE(ReplaceSwap(kNoTunnel, {17}));
  EXPECT_EQ(intf_id_, 1);
  const std::string trace = Trace();
  EXPECT_NE(trace.find("\nlog 7: Intf changed, so updated it to 1.\nEgressManager::UpdateEgress(egress=100001, intf=1"),
            std::string::npos)
      << trace;
}

TEST_F(TunnelsTest, SwapReplaceToLabelZeroMakesTheEgressObjectAnew) {
  InstallSwap({16});
  Forget();
  EXPECT_TRUE(ReplaceSwap(kNoTunnel, {0}));
  EXPECT_EQ(Trace(), R"(
log 7: Updating tunnel outgoing encapsulation for MPLS Capability(Swap). Old tunnel type is none and labels size is 1
EgressManager::DeleteEgress(egress=100001) = 0
EgressManager::CreateEgress(intf=1, mac=00:00:5e:00:01:02, vlan=100, unit=0, port=3, label=0, to_cpu=false, drop=false, control=1) = 100002
)");
  EXPECT_EQ(egress_id_, 100002);
}

TEST_F(TunnelsTest, SwapReplaceWithoutATunnelReportsItsEgressFailures) {
  InstallSwap({16});
  faults().FailNth("EgressManager::UpdateEgress", 1, BCM_E_FULL);
  EXPECT_FALSE(ReplaceSwap(kNoTunnel, {17}));
  EXPECT_EQ(LastLine(), "log 3: Error updating an egress for tunnel MPLS Capability(Swap)!");
  faults().FailNth("EgressManager::CreateEgress", 1, BCM_E_FULL);
  EXPECT_FALSE(ReplaceSwap(kNoTunnel, {0}));
  EXPECT_EQ(LastLine(), "log 3: Error creating an egress for tunnel MPLS Capability(Swap)!");
  EXPECT_EQ(egress_id_, BCM_E_FULL);
}

TEST_F(TunnelsTest, SwapReplaceTakesAnUnknownOldTypeForNoTunnel) {
  InstallSwap({16});
  Forget();
  EXPECT_TRUE(ReplaceSwap(static_cast<TunnelObject::EnumTunnelType>(2), {17}));
  EXPECT_EQ(Trace().find("initiator"), std::string::npos);
}

}  // namespace
