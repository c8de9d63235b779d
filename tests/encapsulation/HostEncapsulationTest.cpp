#include <stdexcept>

#include "tests/encapsulation/ModuleTest.h"

namespace {

class HostEncapsulationTest : public ModuleTest {
 protected:
  using Actions = std::vector<ActionFlags>;

  int Install(unsigned int vlan_destination_id = 10, const Actions& actions = {}, const char* lim = "eth5") {
    return module_.InstallHostOutgoingEncapsulation(9, vlan_destination_id, Lim(lim), actions, host_mac_);
  }
  int Replace(unsigned int vlan_destination_id, const char* lim = "eth6", const Actions& actions = {}) {
    return module_.ReplaceHostOutgoingEncapsulation(9, vlan_destination_id, Lim(lim), actions, other_mac_);
  }
  int Destroy() { return module_.DestroyHostOutgoingEncapsulation(9); }

  /// The last line in words: "to_cpu=true, drop=false".
  std::string BooleansOf(const Actions& actions) {
    EXPECT_EQ(Install(10, actions), 0);
    const std::string line = LastLine();
    EXPECT_EQ(Destroy(), 0);
    const auto begin = line.find("to_cpu");
    return line.substr(begin, line.find(", control") - begin);
  }
};

constexpr const char* kPortOfEth5 =
    "limid_to_type(limid=eth5) = 0\n"
    "limid_to_ifindex(limid=eth5) = 0\n"
    "limid_to_intfname(limid=eth5, size=64) = 0\n"
    "log 7: Converting lim id(name=eth5, type=0x01, value=0x000005) to port\n"
    "limid_is_from_type(limid=eth5, type=cpuport) = 0\n"
    "limid_is_from_type_ethernet(limid=eth5) = 1\n";

TEST_F(HostEncapsulationTest, InstallMakesAnEgressObjectOnTheVlansInterface) {
  InstallVlan();
  EXPECT_EQ(Install(), 0);
  EXPECT_EQ(Trace(), R"(
log 7: Installing outgoing encapsulation for host destination id(9)
log 3: Couldn't find DestinationIdCorrelator with destination id(9)
IntfManager::GetIntfObject(intf=1) = true
)" + std::string(kPortOfEth5) +
                         "EgressManager::CreateEgress(intf=1, mac=02:00:00:00:00:09, vlan=100, unit=0, port=5, "
                         "label=none, to_cpu=false, drop=false, control=0) = 100001\n");
  EXPECT_EQ(Rows("destinations"), "\ndestination 9: intf=1 egress=100001\ndestination 10: intf=1 egress=0\n");
}

TEST_F(HostEncapsulationTest, ActionsSetTheBooleansInAnyOrderAndNumber) {
  InstallVlan();
  EXPECT_EQ(BooleansOf({HAL_ACTION_DROP, HAL_ACTION_TO_CPU}), "to_cpu=true, drop=true");
  EXPECT_EQ(BooleansOf({HAL_ACTION_TO_CPU, HAL_ACTION_TO_CPU, HAL_ACTION_DROP}), "to_cpu=true, drop=true");
  EXPECT_EQ(BooleansOf({HAL_ACTION_TO_CPU}), "to_cpu=true, drop=false");
  EXPECT_EQ(BooleansOf({HAL_ACTION_DROP}), "to_cpu=false, drop=true");
  EXPECT_EQ(BooleansOf({static_cast<ActionFlags>(3)}), "to_cpu=false, drop=false");
  EXPECT_EQ(BooleansOf({HAL_ACTION_NONE, static_cast<ActionFlags>(-1), static_cast<ActionFlags>(5)}),
            "to_cpu=false, drop=false");
}

TEST_F(HostEncapsulationTest, HostWithoutAVlanUsesNoInterfaceAndVlanZero) {
  EXPECT_EQ(Install(0), 0);
  EXPECT_EQ(LastLine(),
            "EgressManager::CreateEgress(intf=-1, mac=02:00:00:00:00:09, vlan=0, unit=0, port=5, label=none, "
            "to_cpu=false, drop=false, control=0) = 100001");
  EXPECT_EQ(Rows("destinations"), "\ndestination 9: intf=-1 egress=100001\n");
}

TEST_F(HostEncapsulationTest, InstallOnAnUnknownVlanIsLoggedByTheRegistryOnly) {
  EXPECT_EQ(Install(5), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Installing outgoing encapsulation for host destination id(9)
log 3: Couldn't find DestinationIdCorrelator with destination id(9)
log 3: Couldn't find DestinationIdCorrelator with destination id(5)
)");
}

TEST_F(HostEncapsulationTest, InstallOnAVlanWhoseInterfaceIsGoneNamesBoth) {
  InstallVlan();
  faults().FailNth("IntfManager::GetIntfObject", 1, 0);
  EXPECT_EQ(Install(), -1);
  EXPECT_EQ(LastLine(),
            "log 3: Couldn't install outgoing encapsulation for host destination id(9), because intf id(1) wasn't "
            "found");
  EXPECT_EQ(Rows("egresses"), "\n");
}

TEST_F(HostEncapsulationTest, InstallOnAHostWithoutAVlanNamesTheMissingInterfaceAsUnsigned) {
  module_.InstallHostOutgoingEncapsulation(8, 0, Lim("eth1"), {}, host_mac_);
  EXPECT_EQ(Install(8), -1);
  EXPECT_EQ(LastLine(),
            "log 3: Couldn't install outgoing encapsulation for host destination id(9), because intf id(4294967295) "
            "wasn't found");
}

TEST_F(HostEncapsulationTest, SecondInstallOfAHostDoesNotTouchTheChip) {
  InstallVlan();
  Install();
  const std::string before = Tables();
  Forget();
  EXPECT_EQ(Install(), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Installing outgoing encapsulation for host destination id(9)
log 3: There is already a host with destination id(9). Can't create a new one.
)");
  EXPECT_EQ(Tables(), before);
}

TEST_F(HostEncapsulationTest, RefusedEgressIsLoggedAndLeavesNoRecord) {
  InstallVlan();
  faults().FailNth("EgressManager::CreateEgress", 1, BCM_E_FULL);
  EXPECT_EQ(Install(), -1);
  EXPECT_EQ(LastLine(), "log 3: Couldn't install outgoing encapsulation for host destination id(9)");
  EXPECT_EQ(Rows("destinations"), "\ndestination 10: intf=1 egress=0\n");
}

TEST_F(HostEncapsulationTest, LimIdOfNoPortGoesToTheCardAsTheInvalidPort) {
  InstallVlan();
  EXPECT_EQ(Install(10, {}, "vlan100"), -1);
  EXPECT_NE(Trace().find("port=-18, label=none, to_cpu=false, drop=false, control=0) = -18 (No such port)\n"),
            std::string::npos);
  EXPECT_EQ(Install(10, {HAL_ACTION_DROP}, "vlan100"), 0);
}

TEST_F(HostEncapsulationTest, UnknownPortLeavesInstallAndReplaceAsAnException) {
  InstallVlan();
  EXPECT_THROW(Install(10, {HAL_ACTION_DROP}, "eth99"), std::out_of_range);
  EXPECT_EQ(Rows("egresses"), "\n");
  EXPECT_EQ(Install(), 0);
  const std::string before = Tables();
  EXPECT_THROW(Replace(10, "lag99"), std::out_of_range);
  EXPECT_EQ(Tables(), before);
}

TEST_F(HostEncapsulationTest, ReplaceChangesTheEgressObjectInPlaceAndRepointsTheRecord) {
  InstallVlan();
  Install();
  Forget();
  EXPECT_EQ(Replace(0, "eth5", {HAL_ACTION_TO_CPU}), 0);
  EXPECT_EQ(Trace(), "\nlog 7: Updating outgoing encapsulation for host destination id(9)\n" +
                         std::string(kPortOfEth5) +
                         "EgressManager::UpdateEgress(egress=100001, intf=-1, mac=00:00:5e:00:01:02, vlan=0, unit=0, "
                         "port=5, label=none, to_cpu=true, drop=false, control=0) = 0\n");
  EXPECT_EQ(Rows("destinations"), "\ndestination 9: intf=-1 egress=100001\ndestination 10: intf=1 egress=0\n");
  EXPECT_EQ(Replace(10), 0);
  EXPECT_EQ(Rows("destinations"), "\ndestination 9: intf=1 egress=100001\ndestination 10: intf=1 egress=0\n");
}

TEST_F(HostEncapsulationTest, ReplacePassesThePlatformsStatusThroughAndKeepsTheRecord) {
  InstallVlan();
  Install();
  faults().FailNth("EgressManager::UpdateEgress", 1, BCM_E_PARAM);
  EXPECT_EQ(Replace(0), BCM_E_PARAM);
  EXPECT_EQ(LastLine(), "log 3: Update of the host destination id(9) failed");
  EXPECT_EQ(Rows("destinations"), "\ndestination 9: intf=1 egress=100001\ndestination 10: intf=1 egress=0\n");
}

TEST_F(HostEncapsulationTest, ReplaceOfAnUnknownHostInstallsItWithTwoMissLines) {
  InstallVlan();
  EXPECT_EQ(Replace(10, "eth5"), 0);
  const std::string trace = Trace();
  EXPECT_EQ(trace.substr(0, trace.find("IntfManager")), R"(
log 7: Updating outgoing encapsulation for host destination id(9)
log 3: Couldn't find DestinationIdCorrelator with destination id(9)
log 7: Installing outgoing encapsulation for host destination id(9)
log 3: Couldn't find DestinationIdCorrelator with destination id(9)
)");
  EXPECT_EQ(Rows("destinations"), "\ndestination 9: intf=1 egress=100001\ndestination 10: intf=1 egress=0\n");
}

TEST_F(HostEncapsulationTest, ReplaceThatTurnsIntoAnInstallReturnsTheInstallsResult) {
  EXPECT_EQ(Replace(5), -1);
  faults().FailNth("EgressManager::CreateEgress", 1, BCM_E_FULL);
  EXPECT_EQ(Replace(0), -1);
}

TEST_F(HostEncapsulationTest, ReplaceOnAMissingVlanOrInterfaceHasNoLineOfItsOwn) {
  InstallVlan();
  Install();
  const std::string before = Tables();
  Forget();
  EXPECT_EQ(Replace(5), -1);
  faults().FailNth("IntfManager::GetIntfObject", 1, 0);
  EXPECT_EQ(Replace(10), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Updating outgoing encapsulation for host destination id(9)
log 3: Couldn't find DestinationIdCorrelator with destination id(5)
log 7: Updating outgoing encapsulation for host destination id(9)
IntfManager::GetIntfObject(intf=1) = false
)");
  EXPECT_EQ(Tables(), before);
}

TEST_F(HostEncapsulationTest, DestroyDeletesTheEgressObjectAndTheRecord) {
  InstallVlan();
  Install();
  Forget();
  EXPECT_EQ(Destroy(), 0);
  EXPECT_EQ(Trace(), R"(
log 7: Destroying outgoing encapsulation for host destination id(9)
EgressManager::DeleteEgress(egress=100001) = 0
)");
  EXPECT_EQ(Rows("egresses"), "\n");
  EXPECT_EQ(Rows("destinations"), "\ndestination 10: intf=1 egress=0\n");
}

TEST_F(HostEncapsulationTest, DestroyOfAnUnknownHostIsASuccessThatSaysSo) {
  EXPECT_EQ(Destroy(), 0);
  EXPECT_EQ(Trace(), R"(
log 7: Destroying outgoing encapsulation for host destination id(9)
log 3: Couldn't find DestinationIdCorrelator with destination id(9)
log 4: Couldn't find DestinationIdCorrelator with host destination id(9), but it is OK since it would be destroyed.
)");
}

TEST_F(HostEncapsulationTest, RefusedDestroyKeepsTheHostAndCanBeRepeated) {
  Install(0);
  faults().FailNth("EgressManager::DeleteEgress", 1, BCM_E_BUSY);
  EXPECT_EQ(Destroy(), -1);
  EXPECT_EQ(LastLine(), "log 3: Couldn't destroy outgoing encapsulation for host destination id(9)");
  EXPECT_EQ(Rows("destinations"), "\ndestination 9: intf=-1 egress=100001\n");
  EXPECT_EQ(Destroy(), 0);
  EXPECT_EQ(Tables(), "");
}

TEST_F(HostEncapsulationTest, PositiveResultsOfEgressCallsAreSuccesses) {
  Install(0);
  faults().FailNth("EgressManager::UpdateEgress", 1, 4);
  EXPECT_EQ(Replace(0), 0);
  faults().FailNth("EgressManager::DeleteEgress", 1, 4);
  EXPECT_EQ(Destroy(), 0);
}

TEST_F(HostEncapsulationTest, BaseCanBeDestroyedUnderItsHost) {
  InstallVlan();
  Install();
  EXPECT_EQ(module_.DestroyVlanOutgoingEncapsulation(10), 0);
  EXPECT_EQ(Rows("destinations"), "\ndestination 9: intf=1 egress=100001\n");
  EXPECT_EQ(Destroy(), 0);
  EXPECT_EQ(Tables(), "");
}

TEST_F(HostEncapsulationTest, NullMacIsRefusedByTheCard) {
  InstallVlan();
  EXPECT_EQ(module_.InstallHostOutgoingEncapsulation(9, 10, Lim("eth5"), {}, nullptr), -1);
  EXPECT_EQ(Rows("egresses"), "\n");
}

}  // namespace
