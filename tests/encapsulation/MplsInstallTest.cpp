#include <stdexcept>

#include "tests/encapsulation/ModuleTest.h"

namespace {

class MplsInstallTest : public ModuleTest {
 protected:
  int Install(const Labels& labels, const Capabilities& capabilities, ActionFlags action = HAL_ACTION_NONE,
              const char* lim = "eth2", unsigned int vlan_destination_id = 10) {
    return module_.InstallMplsUnprotectedOutgoingEncapsulation(9, vlan_destination_id, Lim(lim), host_mac_, labels,
                                                               capabilities, action);
  }
  int Destroy() { return module_.DestroyMplsUnprotectedOutgoingEncapsulation(9); }
  std::string Record() const { return Rows("destinations").substr(1, Rows("destinations").find('\n', 1)); }
};

TEST_F(MplsInstallTest, PushOfTwoLabelsIsShownStepByStep) {
  InstallVlan();
  EXPECT_EQ(Install({100, 200}, {kPush}), 0);
  EXPECT_EQ(Trace(), R"(
log 7: Installing outgoing encapsulation for mpls destination id(9)
log 3: Couldn't find DestinationIdCorrelator with destination id(9)
IntfManager::GetIntfObject(intf=1) = true
limid_to_type(limid=eth2) = 0
limid_to_ifindex(limid=eth2) = 0
limid_to_intfname(limid=eth2, size=64) = 0
log 7: Converting lim id(name=eth2, type=0x01, value=0x000002) to port
limid_is_from_type(limid=eth2, type=cpuport) = 0
limid_is_from_type_ethernet(limid=eth2) = 1
log 7: Installing tunnel outgoing encapsulation for MPLS Capability(Push)
IntfManager::CreateIntf(unit=0, vrf=1, vlan=100, mac=00:00:5e:00:01:01, mtu=1500, flags=0x0) = 2
log 7: FillMplsLabels - MPLS Capability(Push), labels size is 2
HalBcmCommon::GetMplsExpMapId() = 1
bcm_mpls_egress_label_t_init()
bcm_mpls_egress_label_t_init()
log 7: Tunnel Label 0 is 200
log 7: Tunnel Label 1 is 200
IntfManager::GetIntfObject(intf=2) = true
TunnelObject::set_ttl(ttl=255)
TunnelObject::set_type(type=mpls)
TunnelObject::set_mpls_capability(capability=4)
bcm_mpls_tunnel_initiator_set(unit=0, intf=2, num_labels=2, labels=[{flags=0x11, label=100, qos_map=1, exp=0, ttl=255}, {flags=0x11, label=200, qos_map=1, exp=0, ttl=255}]) = 0
EgressManager::CreateEgress(intf=2, mac=02:00:00:00:00:09, vlan=100, unit=0, port=2, label=none, to_cpu=false, drop=false, control=0) = 100001
)");
  EXPECT_EQ(Record(), "destination 9: intf=2 egress=100001\n");
}

TEST_F(MplsInstallTest, EachKindOfTunnelRecordsItsInterfaceAndEgress) {
  struct Case {
    Labels labels;
    Capabilities capabilities;
    const char* record;
  };
  for (const Case& c : {
           Case{{100}, {kPush}, "destination 9: intf=2 egress=100001\n"},
           Case{{}, {kForward}, "destination 9: intf=2 egress=100001\n"},
           Case{{16, 300}, {kSwap}, "destination 9: intf=2 egress=100001\n"},
           Case{{16}, {kSwap}, "destination 9: intf=1 egress=100001\n"},
           Case{{}, {kSwap}, "destination 9: intf=1 egress=100001\n"},
           Case{{500}, {kVcLabel}, "destination 9: intf=-1 egress=100001\n"},
           Case{{0x100000 - 1}, {kProtection, kPush, kProtection}, "destination 9: intf=2 egress=100001\n"},
       }) {
    card_.Reset();
    InstallVlan();
    EXPECT_EQ(Install(c.labels, c.capabilities), 0);
    EXPECT_EQ(Record(), c.record);
    EXPECT_EQ(Destroy(), 0);
    EXPECT_EQ(Rows("egresses") + Rows("initiators"), "\n\n");
    EXPECT_EQ(Rows("intfs").find("intf 2:"), std::string::npos);
    EXPECT_NE(Rows("intfs").find("intf 1:"), std::string::npos) << "the VLAN's own interface stays";
  }
}

TEST_F(MplsInstallTest, ProtectionIsNoticedInTheCheckAndInTheWalk) {
  InstallVlan();
  EXPECT_EQ(Install({100}, {kProtection, kPush}), 0);
  const std::string trace = Trace();
  EXPECT_EQ(trace.find("\nlog 7: Installing outgoing encapsulation for mpls destination id(9)\n"
                       "log 6: Tunnel Mpls Protection is not available and it will be ignored!\n"
                       "log 3: Couldn't find"),
            0U)
      << trace;
  EXPECT_NE(trace.find("\nlog 6: Protection action is not implemented yet\n"
                       "log 7: Installing tunnel outgoing encapsulation for MPLS Capability(Push)\n"),
            std::string::npos);
}

TEST_F(MplsInstallTest, RejectedVectorsAndActionTwoStopBeforeTheRegistry) {
  InstallVlan();
  EXPECT_EQ(Install({100}, {kPush}), 0);
  Forget();
  EXPECT_EQ(Install({100}, {}), -1);
  EXPECT_EQ(Install({100}, {kProtection}), -1);
  EXPECT_EQ(Install({100}, {kPush}, HAL_ACTION_TO_CPU), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Installing outgoing encapsulation for mpls destination id(9)
log 4: No capability provided! Returning false.
log 7: Installing outgoing encapsulation for mpls destination id(9)
log 6: Tunnel Mpls Protection is not available and it will be ignored!
log 4: Invalid counter action (0) to configure mpls tunnel! Returning false.
log 7: Installing outgoing encapsulation for mpls destination id(9)
)");
}

TEST_F(MplsInstallTest, SecondInstallOfADestinationKeepsTheFirst) {
  InstallVlan();
  Install({100}, {kPush});
  const std::string before = Tables();
  Forget();
  EXPECT_EQ(Install({200}, {kPush}), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Installing outgoing encapsulation for mpls destination id(9)
log 3: There is already an outgoind encapsulation with destination id(9). Can't create a new one.
)");
  EXPECT_EQ(Tables(), before);
}

TEST_F(MplsInstallTest, UnknownVlanDestinationIsTheSecondMissLine) {
  EXPECT_EQ(Install({100}, {kPush}), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Installing outgoing encapsulation for mpls destination id(9)
log 3: Couldn't find DestinationIdCorrelator with destination id(9)
log 3: Couldn't find DestinationIdCorrelator with destination id(10)
)");
}

TEST_F(MplsInstallTest, MissingInterfaceOfTheVlanIsSilent) {
  InstallVlan();
  faults().FailNth("IntfManager::GetIntfObject", 1, 0);
  EXPECT_EQ(Install({100}, {kPush}), -1);
  EXPECT_EQ(LastLine(), "IntfManager::GetIntfObject(intf=1) = false");
  EXPECT_EQ(Rows("destinations"), "\ndestination 10: intf=1 egress=0\n");
}

TEST_F(MplsInstallTest, ActionOneDropsWithTheInvalidPortAndEveryOtherValueDoesNothing) {
  InstallVlan();
  EXPECT_EQ(Install({100}, {kPush}, HAL_ACTION_DROP), 0);
  EXPECT_NE(LastLine().find("port=-18, label=none, to_cpu=false, drop=true"), std::string::npos);
  EXPECT_NE(Trace().find("limid_is_from_type_ethernet(limid=eth2) = 1"), std::string::npos);
  for (const int action : {0, 3, 4, 5, -1}) {
    Destroy();
    EXPECT_EQ(Install({100}, {kPush}, static_cast<ActionFlags>(action)), 0);
    EXPECT_NE(LastLine().find("port=2, label=none, to_cpu=false, drop=false"), std::string::npos);
  }
}

TEST_F(MplsInstallTest, UnknownPortLeavesAsAnExceptionUnderActionOneToo) {
  InstallVlan();
  const std::string before = Tables();
  EXPECT_THROW(Install({100}, {kPush}, HAL_ACTION_NONE, "eth99"), std::out_of_range);
  EXPECT_THROW(Install({100}, {kPush}, HAL_ACTION_DROP, "lag99"), std::out_of_range);
  EXPECT_EQ(Tables(), before);
}

TEST_F(MplsInstallTest, LimIdOfNoPortIsRefusedByTheCardUnlessItDrops) {
  InstallVlan();
  EXPECT_EQ(Install({100}, {kPush}, HAL_ACTION_NONE, "vlan100"), -1);
  EXPECT_EQ(LastLine(), "log 3: Can't install MPLS Capability(Push) encapsulation with destination id(9)");
  EXPECT_EQ(Install({100}, {kPush}, HAL_ACTION_DROP, "vlan100"), 0);
}

TEST_F(MplsInstallTest, WrongCapabilitiesAreNamed) {
  InstallVlan();
  EXPECT_EQ(Install({100}, {static_cast<en_HalMplsCapabilities>(6)}), -1);
  EXPECT_EQ(LastLine(), "log 3: Wrong MPLS Capability(Unknown) with destination id(9)");
  EXPECT_EQ(Install({100}, {static_cast<en_HalMplsCapabilities>(-1)}), -1);
  EXPECT_EQ(LastLine(), "log 3: Wrong MPLS Capability(Unknown) with destination id(9)");
  EXPECT_EQ(Install({100}, {kNone, kProtection}), -1);
  EXPECT_EQ(LastLine(), "log 3: Wrong MPLS Capability(None) with destination id(9)");
  EXPECT_EQ(Rows("egresses"), "\n");
}

TEST_F(MplsInstallTest, FailedTunnelIsNamedAndNothingIsRecorded) {
  InstallVlan();
  struct Case {
    en_HalMplsCapabilities capability;
    const char* line;
  };
  for (const Case& c :
       {Case{kSwap, "log 3: Can't install MPLS Capability(Swap) encapsulation with destination id(9)"},
        Case{kForward, "log 3: Can't install MPLS Capability(Forward) encapsulation with destination id(9)"},
        Case{kPush, "log 3: Can't install MPLS Capability(Push) encapsulation with destination id(9)"},
        Case{kVcLabel, "log 3: Can't install MPLS Capability(VCLabel) encapsulation with destination id(9)"}}) {
    faults().FailNth("EgressManager::CreateEgress", 1, BCM_E_FULL);
    EXPECT_EQ(Install({16, 300}, {c.capability}), -1);
    EXPECT_EQ(LastLine(), c.line);
    EXPECT_EQ(Rows("destinations"), "\ndestination 10: intf=1 egress=0\n");
    EXPECT_EQ(Rows("intfs").find("intf 2:"), std::string::npos);
  }
}

TEST_F(MplsInstallTest, LabelsAbove20BitsAreRefusedByTheCardAndUndone) {
  InstallVlan();
  const std::string intfs = Rows("intfs");
  EXPECT_EQ(Install({0x100000}, {kPush}), -1);
  EXPECT_EQ(Install({0x100000}, {kVcLabel}), -1);
  EXPECT_EQ(Install({16, 0x100000}, {kSwap}), -1);
  EXPECT_EQ(Rows("intfs"), intfs);
  EXPECT_EQ(Rows("egresses") + Rows("initiators"), "\n\n");
}

TEST_F(MplsInstallTest, DestroyDeletesEgressThenInitiatorThenInterface) {
  InstallVlan();
  Install({100}, {kPush});
  const std::string text = Rows("intfs").substr(Rows("intfs").find("intf 2:"));
  Forget();
  EXPECT_EQ(Destroy(), 0);
  EXPECT_EQ(Trace(), R"(
log 7: Destroying outgoing encapsulation for mpls destination id(9)
EgressManager::DeleteEgress(egress=100001) = 0
IntfManager::GetIntfObject(intf=2) = true
bcm_mpls_tunnel_initiator_clear(unit=0, intf=2) = 0
log 7: Destroying )" + text +
                         R"(IntfManager::DeleteIntf(unit=0, intf=2) = 0
)");
  EXPECT_EQ(Rows("destinations"), "\ndestination 10: intf=1 egress=0\n");
}

TEST_F(MplsInstallTest, DestroyRemovesTheRecordWhateverTheChipSays) {
  InstallVlan();
  Install({100}, {kPush});
  faults().FailEvery("EgressManager::DeleteEgress", BCM_E_FAIL);
  faults().FailEvery("bcm_mpls_tunnel_initiator_clear", BCM_E_FAIL);
  faults().FailEvery("IntfManager::DeleteIntf", BCM_E_FAIL);
  EXPECT_EQ(Destroy(), 0);
  EXPECT_NE(Trace().find("\nlog 3: Error clearing tunnel initiator (intf id(2), rv=-11)\nlog 7: Destroying "),
            std::string::npos);
  EXPECT_EQ(Rows("destinations"), "\ndestination 10: intf=1 egress=0\n");
}

TEST_F(MplsInstallTest, DestroyOfAVcLabelTouchesNoInterface) {
  InstallVlan();
  Install({500}, {kVcLabel});
  Forget();
  EXPECT_EQ(Destroy(), 0);
  EXPECT_EQ(Trace(), R"(
log 7: Destroying outgoing encapsulation for mpls destination id(9)
EgressManager::DeleteEgress(egress=100001) = 0
)");
}

TEST_F(MplsInstallTest, DestroyLeavesAnInterfaceWithoutTunnelOrObjectAlone) {
  InstallVlan();
  Install({16}, {kSwap});
  Forget();
  EXPECT_EQ(Destroy(), 0);
  EXPECT_EQ(LastLine(), "IntfManager::GetIntfObject(intf=1) = true");
  Install({100}, {kPush});
  faults().FailNth("IntfManager::GetIntfObject", 1, 0);
  EXPECT_EQ(Destroy(), 0);
  EXPECT_EQ(LastLine(), "IntfManager::GetIntfObject(intf=2) = false");
}

TEST_F(MplsInstallTest, DestroyOfAnUnknownDestinationDeletesNothing) {
  EXPECT_EQ(Destroy(), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Destroying outgoing encapsulation for mpls destination id(9)
log 3: Couldn't find DestinationIdCorrelator with destination id(9)
)");
}

TEST_F(MplsInstallTest, ExtremeIdsArePrintedAsCallersPassThem) {
  InstallVlan(0x80000000);
  EXPECT_EQ(module_.InstallMplsUnprotectedOutgoingEncapsulation(0xFFFFFFFF, 0x80000000, Lim("eth2"), host_mac_, {100},
                                                                {kPush}, HAL_ACTION_NONE),
            0);
  EXPECT_NE(Trace().find("log 3: Couldn't find DestinationIdCorrelator with destination id(4294967295)\n"),
            std::string::npos);
  EXPECT_EQ(module_.DestroyMplsUnprotectedOutgoingEncapsulation(0xFFFFFFFF), 0);
}

TEST_F(MplsInstallTest, AnyDestinationWithAnInterfaceServesAsTheBase) {
  InstallVlan();
  module_.InstallHostOutgoingEncapsulation(11, 10, Lim("eth1"), {}, host_mac_);
  EXPECT_EQ(Install({100}, {kPush}, HAL_ACTION_NONE, "eth2", 11), 0);
  Destroy();
  module_.InstallMplsUnprotectedOutgoingEncapsulation(12, 10, Lim("eth1"), host_mac_, {500}, {kVcLabel},
                                                      HAL_ACTION_NONE);
  // A VC label has no interface to build on.
  EXPECT_EQ(Install({100}, {kPush}, HAL_ACTION_NONE, "eth2", 12), -1);
  EXPECT_EQ(LastLine(), "IntfManager::GetIntfObject(intf=-1) = false");
}

}  // namespace
