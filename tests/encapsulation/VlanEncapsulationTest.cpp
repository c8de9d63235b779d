#include "tests/encapsulation/ModuleTest.h"

namespace {

class VlanEncapsulationTest : public ModuleTest {
 protected:
  using VlanCapabilities = std::vector<en_HalVlanCapabilities>;

  VlanEncapsulationTest() {
    module_.InstallVrf(1);
    module_.InstallVrf(2);
    Forget();
  }

  int Install(const VlanCapabilities& capabilities = {}) {
    return module_.InstallVlanOutgoingEncapsulation(12, Lim("vlan100"), 1, 1500, router_mac_, capabilities);
  }
  int Replace(const char* lim, unsigned int vrf, const VlanCapabilities& capabilities = {}) {
    return module_.ReplaceVlanOutgoingEncapsulation(12, Lim(lim), vrf, 9000, other_mac_, capabilities);
  }
  int Destroy() { return module_.DestroyVlanOutgoingEncapsulation(12); }

  unsigned int FlagsOfEntry(const VlanCapabilities& capabilities) {
    EXPECT_EQ(Install(capabilities), 0);
    const std::string row = Rows("stations");
    EXPECT_EQ(Destroy(), 0);
    if (row == "\nstation 100: mask=0xfff mac=00:00:5e:00:01:01 flags=0x20\n") return 0x20;
    EXPECT_EQ(row, "\nstation 100: mask=0xfff mac=00:00:5e:00:01:01 flags=0x0\n");
    return 0;
  }
};

TEST_F(VlanEncapsulationTest, InstallProgramsStationAssociationAndInterfaceInThisOrder) {
  EXPECT_EQ(Install(), 0);
  EXPECT_EQ(Trace(), R"(
log 7: Installing outgoing encapsulation for VLAN destination id(12)
limid_to_l3_vlan_vlanid(limid=vlan100) = 100
fm_local_slot() = 1
fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(slot=1)
vlan_proto_ctrl_enable(unit=0, vlan=100) = 0
MyStationManager::InsertMyStationVlanEntry(vlan=100, mask=0xfff, mac=00:00:5e:00:01:01, flags=0x0) = 0
IngressManager::AssociateVlanToVrf(vlan=100, vrf=1) = 0
IntfManager::CreateIntf(unit=0, vrf=1, vlan=100, mac=00:00:5e:00:01:01, mtu=1500, flags=0x0) = 1
)");
  EXPECT_EQ(Rows("destinations"), "\ndestination 12: intf=1 egress=0\n");
}

TEST_F(VlanEncapsulationTest, CapabilityOneAnywhereInTheListSetsTheStationFlag) {
  const auto other = static_cast<en_HalVlanCapabilities>(7);
  EXPECT_EQ(FlagsOfEntry({}), 0U);
  EXPECT_EQ(FlagsOfEntry({HAL_VLAN_CAPABILITY_NONE, other, static_cast<en_HalVlanCapabilities>(-1)}), 0U);
  EXPECT_EQ(FlagsOfEntry({HAL_VLAN_CAPABILITY_STATION_FLAG}), 0x20U);
  EXPECT_EQ(FlagsOfEntry({other, HAL_VLAN_CAPABILITY_STATION_FLAG, HAL_VLAN_CAPABILITY_STATION_FLAG}), 0x20U);
}

TEST_F(VlanEncapsulationTest, InstallGoesOnWhenTheProtocolControlFailsWithAnyNonZeroResult) {
  for (const int rv : {-11, 1}) {
    faults().FailNth("vlan_proto_ctrl_enable", 1, rv);
    EXPECT_EQ(Install(), 0);
    const std::string trace = Trace();
    EXPECT_NE(trace.find("vlan_proto_ctrl_enable(unit=0, vlan=100) = "), std::string::npos);
    EXPECT_NE(trace.find("\nlog 3: Error enabling VLAN Protocol Packet Control on VLAN 100\nMyStationManager::Insert"),
              std::string::npos)
        << trace;
    EXPECT_EQ(Destroy(), 0);
  }
}

TEST_F(VlanEncapsulationTest, InstallThatIsRefusedTheStationStopsSilentlyAndLeavesTheProtocolControlOn) {
  faults().FailNth("MyStationManager::InsertMyStationVlanEntry", 1, BCM_E_FULL);
  EXPECT_EQ(Install(), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Installing outgoing encapsulation for VLAN destination id(12)
limid_to_l3_vlan_vlanid(limid=vlan100) = 100
fm_local_slot() = 1
fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(slot=1)
vlan_proto_ctrl_enable(unit=0, vlan=100) = 0
MyStationManager::InsertMyStationVlanEntry(vlan=100, mask=0xfff, mac=00:00:5e:00:01:01, flags=0x0) = -6 (Table full)
)");
  EXPECT_EQ(Tables(), "protocol 100: control=on\n");
}

TEST_F(VlanEncapsulationTest, InstallThatIsRefusedTheAssociationTakesTheStationBackSilently) {
  for (const int rv : {BCM_E_FULL + 0, 1}) {
    faults().FailNth("IngressManager::AssociateVlanToVrf", 1, rv);
    EXPECT_EQ(Install(), -1);
    const std::string trace = Trace();
    const std::string refused = rv < 0 ? "-6 (Table full)" : "1";
    EXPECT_EQ(trace.substr(trace.find("\nIngress")),
              "\nIngressManager::AssociateVlanToVrf(vlan=100, vrf=1) = " + refused +
                  "\nMyStationManager::RemoveMyStationVlanEntry(vlan=100) = 0\n");
    EXPECT_EQ(Rows("stations"), "\n");
    EXPECT_EQ(Rows("destinations"), "\n");
  }
}

TEST_F(VlanEncapsulationTest, InstallThatIsRefusedTheInterfaceUndoesStationThenAssociation) {
  faults().FailNth("IntfManager::CreateIntf", 1, BCM_E_FULL);
  EXPECT_EQ(Install(), -1);
  const std::string trace = Trace();
  EXPECT_EQ(trace.substr(trace.find("\nIntfManager")), R"(
IntfManager::CreateIntf(unit=0, vrf=1, vlan=100, mac=00:00:5e:00:01:01, mtu=1500, flags=0x0) = -6 (Table full)
log 3: Error on installing vlan outgoing encapsulation of vlan id(100)
MyStationManager::RemoveMyStationVlanEntry(vlan=100) = 0
IngressManager::DissociateVlanfromVrf(vlan=100, vrf=1) = 0
)");
  EXPECT_EQ(Tables(), "protocol 100: control=on\n");
}

TEST_F(VlanEncapsulationTest, InstallGoesThroughItsWholeUndoWhenTheUndoFailsToo) {
  faults().FailNth("IntfManager::CreateIntf", 1, BCM_E_FULL);
  faults().FailNth("MyStationManager::RemoveMyStationVlanEntry", 1, BCM_E_FAIL);
  faults().FailNth("IngressManager::DissociateVlanfromVrf", 1, BCM_E_FAIL);
  EXPECT_EQ(Install(), -1);
  const std::string trace = Trace();
  EXPECT_EQ(trace.substr(trace.find("\nMyStationManager::Remove")), R"(
MyStationManager::RemoveMyStationVlanEntry(vlan=100) = -11 (Operation failed)
IngressManager::DissociateVlanfromVrf(vlan=100, vrf=1) = -11 (Operation failed)
)");
  EXPECT_EQ(Rows("destinations"), "\n");
}

TEST_F(VlanEncapsulationTest, PositiveResultsOfStationAndInterfaceCallsAreSuccesses) {
  faults().FailNth("MyStationManager::InsertMyStationVlanEntry", 1, 3);
  EXPECT_EQ(Install(), 0);
  faults().FailNth("MyStationManager::UpdateMyStationVlanEntry", 1, 3);
  EXPECT_EQ(Replace("vlan100", 1), 0);
  faults().FailNth("MyStationManager::RemoveMyStationVlanEntry", 1, 3);
  faults().FailNth("IntfManager::DeleteIntf", 1, 3);
  EXPECT_EQ(Destroy(), 0);
}

TEST_F(VlanEncapsulationTest, SecondInstallOfAnIdKeepsTheFirstRecordAndSucceeds) {
  EXPECT_EQ(Install(), 0);
  Forget();
  EXPECT_EQ(module_.InstallVlanOutgoingEncapsulation(12, Lim("vlan200"), 1, 1500, router_mac_, {}), 0);
  const std::string trace = Trace();
  EXPECT_EQ(trace.substr(trace.find("\nlog 3")),
            "\nlog 3: Tried to insert DestinationIdCorrelator with destination id(12), but there was already a member "
            "with the same identifier.\n");
  EXPECT_EQ(Rows("destinations"), "\ndestination 12: intf=1 egress=0\n");
  EXPECT_EQ(Rows("intfs").find("intf 2: ") != std::string::npos, true);
}

TEST_F(VlanEncapsulationTest, BadInputIsRefusedByTheCardAndLeavesNothingButTheProtocolControl) {
  EXPECT_EQ(module_.InstallVlanOutgoingEncapsulation(1, Lim("vlan100"), 1, 1500, nullptr, {}), -1);
  EXPECT_EQ(module_.InstallVlanOutgoingEncapsulation(2, Lim("vlan101"), 1, 0, router_mac_, {}), -1);
  EXPECT_EQ(module_.InstallVlanOutgoingEncapsulation(3, Lim("vlan4095"), 1, 1500, router_mac_, {}), -1);
  EXPECT_EQ(module_.InstallVlanOutgoingEncapsulation(4, Lim("vlan0"), 1, 1500, router_mac_, {}), -1);
  EXPECT_EQ(Rows("stations") + Rows("associations") + Rows("intfs") + Rows("destinations"), "\n\n\n\n");
}

TEST_F(VlanEncapsulationTest, ProtocolControlTakesTheLow16BitsOfAVlanThatMessagesPrintWhole) {
  faults().FailEvery("vlan_proto_ctrl_enable", BCM_E_FAIL);
  faults().FailEvery("IntfManager::CreateIntf", BCM_E_FULL);
  module_.InstallVlanOutgoingEncapsulation(12, Lim("vlan65636"), 1, 1500, router_mac_, {});
  const std::string trace = Trace();
  EXPECT_NE(trace.find("\nvlan_proto_ctrl_enable(unit=0, vlan=100) = -11"), std::string::npos) << trace;
  EXPECT_NE(trace.find("\nlog 3: Error enabling VLAN Protocol Packet Control on VLAN 65636\n"), std::string::npos);
  EXPECT_NE(trace.find("InsertMyStationVlanEntry(vlan=65636, "), std::string::npos);
}

TEST_F(VlanEncapsulationTest, DestinationsFrom2To31UpArePrintedAsCallersPassThem) {
  EXPECT_EQ(module_.InstallVlanOutgoingEncapsulation(0xFFFFFFFF, Lim("vlan100"), 1, 1500, router_mac_, {}), 0);
  EXPECT_EQ(Trace().find("\nlog 7: Installing outgoing encapsulation for VLAN destination id(4294967295)\n"), 0U);
  EXPECT_EQ(module_.InstallVlanOutgoingEncapsulation(0, Lim("vlan101"), 1, 1500, router_mac_, {}), 0);
  EXPECT_EQ(module_.InstallVlanOutgoingEncapsulation(0x80000000, Lim("vlan102"), 1, 1500, router_mac_, {}), 0);
  // In the order of the map's signed keys.
  EXPECT_EQ(Rows("destinations"), R"(
destination 2147483648: intf=3 egress=0
destination 4294967295: intf=1 egress=0
destination 0: intf=2 egress=0
)");
  EXPECT_EQ(module_.DestroyVlanOutgoingEncapsulation(0xFFFFFFFF), 0);
}

TEST_F(VlanEncapsulationTest, ReplaceWithTheSameVrfLeavesTheAssociationAndTheOldVlansStation) {
  Install();
  Forget();
  EXPECT_EQ(Replace("vlan200", 1, {HAL_VLAN_CAPABILITY_STATION_FLAG}), 0);
  EXPECT_EQ(Trace(), R"(
log 7: Updating outgoing encapsulation for vlan destination id(12)
limid_to_l3_vlan_vlanid(limid=vlan200) = 200
MyStationManager::UpdateMyStationVlanEntry(vlan=200, mask=0xfff, mac=00:00:5e:00:01:02, flags=0x20) = 0
IntfManager::GetIntfObject(intf=1) = true
IntfManager::UpdateIntf(intf=1, unit=0, vrf=1, vlan=200, mac=00:00:5e:00:01:02, mtu=9000, flags=0x0) = 1
)");
  EXPECT_EQ(Rows("associations"), "\nassociation 100: vrf=1\n");
  EXPECT_EQ(Rows("stations"), R"(
station 100: mask=0xfff mac=00:00:5e:00:01:01 flags=0x0
station 200: mask=0xfff mac=00:00:5e:00:01:02 flags=0x20
)");
}

TEST_F(VlanEncapsulationTest, ReplaceWithAnotherVrfMovesFromTheStoredPairToTheNewOne) {
  Install();
  Forget();
  EXPECT_EQ(Replace("vlan200", 2), 0);
  EXPECT_EQ(Trace(), R"(
log 7: Updating outgoing encapsulation for vlan destination id(12)
limid_to_l3_vlan_vlanid(limid=vlan200) = 200
MyStationManager::UpdateMyStationVlanEntry(vlan=200, mask=0xfff, mac=00:00:5e:00:01:02, flags=0x0) = 0
IntfManager::GetIntfObject(intf=1) = true
IngressManager::DissociateVlanfromVrf(vlan=100, vrf=1) = 0
IngressManager::AssociateVlanToVrf(vlan=200, vrf=2) = 0
IntfManager::UpdateIntf(intf=1, unit=0, vrf=2, vlan=200, mac=00:00:5e:00:01:02, mtu=9000, flags=0x0) = 1
)");
}

TEST_F(VlanEncapsulationTest, ReplaceOfAnUnknownDestinationIsLoggedByTheRegistryOnly) {
  EXPECT_EQ(Replace("vlan100", 1), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Updating outgoing encapsulation for vlan destination id(12)
log 3: Couldn't find DestinationIdCorrelator with destination id(12)
)");
}

TEST_F(VlanEncapsulationTest, ReplaceThatIsRefusedTheStationStopsSilently) {
  Install();
  const std::string before = Tables();
  Forget();
  faults().FailNth("MyStationManager::UpdateMyStationVlanEntry", 1, BCM_E_FULL);
  EXPECT_EQ(Replace("vlan200", 2), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Updating outgoing encapsulation for vlan destination id(12)
limid_to_l3_vlan_vlanid(limid=vlan200) = 200
MyStationManager::UpdateMyStationVlanEntry(vlan=200, mask=0xfff, mac=00:00:5e:00:01:02, flags=0x0) = -6 (Table full)
)");
  EXPECT_EQ(Tables(), before);
}

TEST_F(VlanEncapsulationTest, ReplaceThatCannotMoveTheAssociationStopsSilentlyAndUndoesNothing) {
  for (const int rv : {BCM_E_FAIL + 0, 1}) {
    Install();
    faults().FailNth("IngressManager::DissociateVlanfromVrf", 1, rv);
    Forget();
    EXPECT_EQ(Replace("vlan200", 2), -1);
    EXPECT_EQ(LastLine().find("IngressManager::DissociateVlanfromVrf(vlan=100, vrf=1) = "), 0U);
    card_.Reset();
    module_.InstallVrf(1);
    module_.InstallVrf(2);

    Install();
    faults().FailNth("IngressManager::AssociateVlanToVrf", 1, rv);
    Forget();
    EXPECT_EQ(Replace("vlan200", 2), -1);
    EXPECT_EQ(LastLine().find("IngressManager::AssociateVlanToVrf(vlan=200, vrf=2) = "), 0U);
    EXPECT_EQ(Rows("destinations"), "\ndestination 12: intf=1 egress=0\n");
    EXPECT_EQ(Rows("stations").find("station 200") != std::string::npos, true);
    card_.Reset();
    module_.InstallVrf(1);
    module_.InstallVrf(2);
  }
}

TEST_F(VlanEncapsulationTest, ReplaceWhoseInterfaceIsRefusedNamesTheDestination) {
  Install();
  Forget();
  faults().FailNth("IntfManager::UpdateIntf", 1, BCM_E_PARAM);
  EXPECT_EQ(Replace("vlan100", 1), -1);
  EXPECT_EQ(LastLine(), "log 3: Error on updating vlan destination id(12)");
  EXPECT_EQ(Rows("destinations"), "\ndestination 12: intf=1 egress=0\n");
}

TEST_F(VlanEncapsulationTest, ReplaceWithoutAnInterfaceObjectLeavesTheAssociationAlone) {
  Install();
  Forget();
  faults().FailNth("IntfManager::GetIntfObject", 1, 0);
  EXPECT_EQ(Replace("vlan200", 2), 0);
  EXPECT_EQ(Trace().find("IngressManager"), std::string::npos);
}

TEST_F(VlanEncapsulationTest, DestroyTakesEverythingFromTheInterfaceObject) {
  Install();
  Replace("vlan200", 2);
  Forget();
  EXPECT_EQ(Destroy(), 0);
  EXPECT_EQ(Trace(), R"(
log 7: Destroying outgoing encapsulation for vlan destination id(12)
IntfManager::GetIntfObject(intf=1) = true
MyStationManager::RemoveMyStationVlanEntry(vlan=200) = 0
IngressManager::DissociateVlanfromVrf(vlan=200, vrf=2) = 0
IntfManager::DeleteIntf(unit=0, intf=1) = 0
fm_local_slot() = 1
fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(slot=1)
vlan_proto_ctrl_disable(unit=0, vlan=200) = 0
)");
  // What the move to VLAN 200 left behind.
  EXPECT_EQ(Tables(), "station 100: mask=0xfff mac=00:00:5e:00:01:01 flags=0x0\nprotocol 100: control=on\n");
}

TEST_F(VlanEncapsulationTest, DestroyOfAnUnknownDestinationIsLoggedByTheRegistryOnly) {
  EXPECT_EQ(Destroy(), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Destroying outgoing encapsulation for vlan destination id(12)
log 3: Couldn't find DestinationIdCorrelator with destination id(12)
)");
}

TEST_F(VlanEncapsulationTest, DestroyWithoutAnInterfaceObjectOrStationChangesNothing) {
  Install();
  const std::string before = Tables();
  Forget();
  faults().FailNth("IntfManager::GetIntfObject", 1, 0);
  EXPECT_EQ(Destroy(), -1);
  faults().FailNth("MyStationManager::RemoveMyStationVlanEntry", 1, BCM_E_NOT_FOUND);
  EXPECT_EQ(Destroy(), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Destroying outgoing encapsulation for vlan destination id(12)
IntfManager::GetIntfObject(intf=1) = false
log 7: Destroying outgoing encapsulation for vlan destination id(12)
IntfManager::GetIntfObject(intf=1) = true
MyStationManager::RemoveMyStationVlanEntry(vlan=100) = -7 (No such entry)
)");
  EXPECT_EQ(Tables(), before);
}

TEST_F(VlanEncapsulationTest, DestroyThatCannotDissociatePutsTheStationBackWithTheInterfacesFlags) {
  Install({HAL_VLAN_CAPABILITY_STATION_FLAG});
  Forget();
  faults().FailNth("IngressManager::DissociateVlanfromVrf", 1, BCM_E_FAIL);
  EXPECT_EQ(Destroy(), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Destroying outgoing encapsulation for vlan destination id(12)
IntfManager::GetIntfObject(intf=1) = true
MyStationManager::RemoveMyStationVlanEntry(vlan=100) = 0
IngressManager::DissociateVlanfromVrf(vlan=100, vrf=1) = -11 (Operation failed)
MyStationManager::InsertMyStationVlanEntry(vlan=100, mask=0xfff, mac=00:00:5e:00:01:01, flags=0x0) = 0
)");
  EXPECT_EQ(Rows("destinations"), "\ndestination 12: intf=1 egress=0\n");
}

TEST_F(VlanEncapsulationTest, DestroyThatCannotDeleteTheInterfaceRestoresBothAndCanBeTriedAgain) {
  Install();
  Forget();
  faults().FailNth("IntfManager::DeleteIntf", 1, BCM_E_FAIL);
  EXPECT_EQ(Destroy(), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Destroying outgoing encapsulation for vlan destination id(12)
IntfManager::GetIntfObject(intf=1) = true
MyStationManager::RemoveMyStationVlanEntry(vlan=100) = 0
IngressManager::DissociateVlanfromVrf(vlan=100, vrf=1) = 0
IntfManager::DeleteIntf(unit=0, intf=1) = -11 (Operation failed)
log 3: Error on destroying vlan destination id(12)
IngressManager::AssociateVlanToVrf(vlan=100, vrf=1) = 0
MyStationManager::InsertMyStationVlanEntry(vlan=100, mask=0xfff, mac=00:00:5e:00:01:01, flags=0x0) = 0
)");
  EXPECT_EQ(Destroy(), 0);
  EXPECT_EQ(Tables(), "");
}

TEST_F(VlanEncapsulationTest, DestroyRestoresEverythingWhenTheRestoresFailToo) {
  Install();
  faults().FailNth("IntfManager::DeleteIntf", 1, BCM_E_FAIL);
  faults().FailNth("IngressManager::AssociateVlanToVrf", 1, BCM_E_FULL);
  faults().FailNth("MyStationManager::InsertMyStationVlanEntry", 1, BCM_E_FULL);
  Forget();
  EXPECT_EQ(Destroy(), -1);
  const std::string trace = Trace();
  EXPECT_EQ(trace.substr(trace.find("\nlog 3")), R"(
log 3: Error on destroying vlan destination id(12)
IngressManager::AssociateVlanToVrf(vlan=100, vrf=1) = -6 (Table full)
MyStationManager::InsertMyStationVlanEntry(vlan=100, mask=0xfff, mac=00:00:5e:00:01:01, flags=0x0) = -6 (Table full)
)");
  EXPECT_EQ(Rows("destinations"), "\ndestination 12: intf=1 egress=0\n");
}

TEST_F(VlanEncapsulationTest, DestroyAsksTheInterfaceAnewForEveryStepAndRestore) {
  Install();
  const softcard::Record record(card_.log(), softcard::CallLog::Recording::kAll);
  faults().FailNth("IntfManager::DeleteIntf", 1, BCM_E_FAIL);
  Forget();
  EXPECT_EQ(Destroy(), -1);
  int vlan_reads = 0;
  for (const std::string& line : card_.log().Lines()) vlan_reads += line.find("HwObject::vlan_id") == 0 ? 1 : 0;
  // Station, kept for the protocol control, dissociation, and the two restores.
  EXPECT_EQ(vlan_reads, 5);
}

TEST_F(VlanEncapsulationTest, DestroyGoesOnWhenTheProtocolControlFailsWithAnyNonZeroResult) {
  for (const int rv : {-11, 1}) {
    Install();
    Forget();
    faults().FailNth("vlan_proto_ctrl_disable", 1, rv);
    EXPECT_EQ(Destroy(), 0);
    EXPECT_EQ(LastLine(), "log 3: Error disabling VLAN Protocol Packet Control on VLAN 100");
    EXPECT_EQ(Rows("destinations"), "\n");
  }
}

TEST_F(VlanEncapsulationTest, UnitIsReadFromTheCardAtEachUse) {
  softcard::CardDescription description;
  description.unit = 3;
  card_.Reset(description);
  module_.InstallVrf(1);
  Forget();
  EXPECT_EQ(Install(), 0);
  EXPECT_NE(Trace().find("CreateIntf(unit=3, "), std::string::npos);
}

}  // namespace
