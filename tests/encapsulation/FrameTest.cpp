#include "tests/encapsulation/ModuleTest.h"

namespace {

class FrameTest : public ModuleTest {
 protected:
  int Init(int egress_rv, int ingress_rv) {
    faults().FailNth("bcm_switch_control_set", 1, egress_rv);
    faults().FailNth("bcm_switch_control_set", 2, ingress_rv);
    return module_.InitEncapsulationModule();
  }
};

TEST_F(FrameTest, InitSetsTheEgressModeThenTheIngressModeAndSaysSo) {
  EXPECT_EQ(module_.InitEncapsulationModule(), 0);
  EXPECT_EQ(Trace(), R"(
bcm_switch_control_set(unit=0, type=bcmSwitchL3EgressMode, arg=1) = 0
bcm_switch_control_set(unit=0, type=bcmSwitchL3IngressMode, arg=1) = 0
log 7: Encapsulation module initialized successfully
)");
}

TEST_F(FrameTest, InitTriesTheIngressModeAfterTheEgressModeFailed) {
  EXPECT_EQ(Init(BCM_E_UNAVAIL, BCM_E_NONE), -1);
  EXPECT_EQ(Trace(), R"(
bcm_switch_control_set(unit=0, type=bcmSwitchL3EgressMode, arg=1) = -16 (Unavailable)
log 3: Could not init encapsulation module L3 egress mode: bcm_err='Unavailable' [-16]
bcm_switch_control_set(unit=0, type=bcmSwitchL3IngressMode, arg=1) = 0
)");
}

TEST_F(FrameTest, InitReportsTheIngressModeAlone) {
  EXPECT_EQ(Init(BCM_E_NONE, BCM_E_INTERNAL), -1);
  EXPECT_EQ(Trace(), R"(
bcm_switch_control_set(unit=0, type=bcmSwitchL3EgressMode, arg=1) = 0
bcm_switch_control_set(unit=0, type=bcmSwitchL3IngressMode, arg=1) = -1 (Internal error)
log 3: Could not init encapsulation module L3 ingress mode: bcm_err='Internal error' [-1]
)");
}

TEST_F(FrameTest, InitReportsBothModesInTheirOrder) {
  EXPECT_EQ(Init(BCM_E_PORT, -19), -1);
  EXPECT_EQ(Trace(), R"(
bcm_switch_control_set(unit=0, type=bcmSwitchL3EgressMode, arg=1) = -18 (No such port)
log 3: Could not init encapsulation module L3 egress mode: bcm_err='No such port' [-18]
bcm_switch_control_set(unit=0, type=bcmSwitchL3IngressMode, arg=1) = -19 (Unknown error)
log 3: Could not init encapsulation module L3 ingress mode: bcm_err='Unknown error' [-19]
)");
}

TEST_F(FrameTest, PositiveResultsOfTheModesAreSuccesses) {
  EXPECT_EQ(Init(1, 2), 0);
  EXPECT_EQ(LastLine(), "log 7: Encapsulation module initialized successfully");
}

TEST_F(FrameTest, VrfOperationsPassTheVrfAndTheStatusThroughWithoutALogLine) {
  EXPECT_EQ(module_.InstallVrf(7), 0);
  EXPECT_EQ(module_.InstallVrf(7), BCM_E_EXISTS);
  EXPECT_EQ(module_.DestroyVrf(7), 0);
  EXPECT_EQ(module_.DestroyVrf(7), BCM_E_NOT_FOUND);
  faults().FailNth("IngressManager::CreateIngress", 1, 5);
  EXPECT_EQ(module_.InstallVrf(8), 5);
  EXPECT_EQ(Trace(), R"(
IngressManager::CreateIngress(unit=0, vrf=7, flags=0x0) = 0
IngressManager::CreateIngress(unit=0, vrf=7, flags=0x0) = -8 (Entry exists)
IngressManager::DeleteIngress(unit=0, vrf=7) = 0
IngressManager::DeleteIngress(unit=0, vrf=7) = -7 (No such entry)
IngressManager::CreateIngress(unit=0, vrf=8, flags=0x0) = 5
)");
}

TEST_F(FrameTest, VrfZeroIsPassedThrough) {
  module_.InstallVrf(0);
  EXPECT_EQ(Trace().find("\nIngressManager::CreateIngress(unit=0, vrf=0, flags=0x0) = "), 0U);
}

TEST_F(FrameTest, ManagersAreAskedForAnewAtEachUse) {
  const softcard::Record record(card_.log(), softcard::CallLog::Recording::kAll);
  module_.InstallVrf(7);
  module_.DestroyVrf(7);
  EXPECT_EQ(Trace(), R"(
HwEncapsulationResourceManager::ingress_mng()
IngressManager::CreateIngress(unit=0, vrf=7, flags=0x0) = 0
HwEncapsulationResourceManager::ingress_mng()
IngressManager::DeleteIngress(unit=0, vrf=7) = 0
)");
}

}  // namespace
