#include <stdexcept>

#include "bcm/mpls.h"
#include "hal/fm.h"
#include "tests/softcard/OnCard.h"

namespace {

class FaultPlanTest : public OnCard {
 protected:
  softcard::FaultPlan& faults_ = card_.faults();
};

TEST_F(FaultPlanTest, TheNthCallFromNowOnFailsOnce) {
  CreateIntf();
  faults_.FailNth("IntfManager::CreateIntf", 2, BCM_E_FULL);
  EXPECT_EQ(CreateIntf(), 2);
  EXPECT_EQ(CreateIntf(), BCM_E_FULL);
  EXPECT_EQ(CreateIntf(), 3);
  EXPECT_TRUE(faults_.empty());
}

TEST_F(FaultPlanTest, EveryCallFailsUntilThePlanIsCleared) {
  faults_.FailEvery("IntfManager::CreateIntf", BCM_E_RESOURCE);
  EXPECT_EQ(CreateIntf(), BCM_E_RESOURCE);
  EXPECT_EQ(CreateIntf(), BCM_E_RESOURCE);
  faults_.Clear();
  EXPECT_EQ(CreateIntf(), 1);
}

TEST_F(FaultPlanTest, ANegativeResultLeavesTheTablesAlone) {
  const int intf = CreateIntf();
  const Lines before = Rows("intfs");
  faults_.FailNth("IntfManager::DeleteIntf", 1, BCM_E_INTERNAL);
  EXPECT_EQ(intfs_.DeleteIntf(0, intf), BCM_E_INTERNAL);
  EXPECT_EQ(Rows("intfs"), before);
  EXPECT_EQ(LastLine(), "IntfManager::DeleteIntf(unit=0, intf=1) = -1 (Internal error)");
}

TEST_F(FaultPlanTest, ZeroOrAPositiveResultOnlyReplacesTheResult) {
  faults_.FailNth("IngressManager::AssociateVlanToVrf", 1, 5);
  EXPECT_EQ(ingress_.AssociateVlanToVrf(100, 0), 5);
  EXPECT_EQ(Rows("associations"), Lines{"association 100: vrf=0"});
  faults_.FailNth("IngressManager::DissociateVlanfromVrf", 1, 0);
  EXPECT_EQ(ingress_.DissociateVlanfromVrf(100, 7), 0);
  EXPECT_EQ(Rows("associations"), Lines{"association 100: vrf=0"});
}

TEST_F(FaultPlanTest, FalseHidesAnObjectThatIsThere) {
  const int intf = CreateIntf();
  faults_.FailNth("IntfManager::GetIntfObject", 1, 0);
  EXPECT_EQ(Intf(intf), nullptr);
  EXPECT_NE(Intf(intf), nullptr);
  faults_.FailNth("IntfManager::GetIntfObject", 1, 1);
  EXPECT_NE(Intf(intf), nullptr);
}

TEST_F(FaultPlanTest, AccessesGiveOtherValuesTheSecondTime) {
  IntfObject* const object = Intf(CreateIntf());
  faults_.FailNth("HwObject::vlan_id", 2, 200);
  faults_.FailNth("IntfObject::id", 1, -1);
  faults_.FailNth("TunnelObject::type", 1, 1);
  EXPECT_EQ(object->vlan_id(), 100u);
  EXPECT_EQ(object->vlan_id(), 200u);
  EXPECT_EQ(object->vlan_id(), 100u);
  EXPECT_EQ(object->id(), -1);
  EXPECT_EQ(object->tunnel().type(), TunnelObject::kTunnelTypeMpls);
}

TEST_F(FaultPlanTest, TheCardsOwnOperationsFailByTheirOwnNames) {
  faults_.FailNth("vlan_proto_ctrl_enable", 1, -3);
  EXPECT_EQ(fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(1)(0, 100), -3);
  EXPECT_EQ(Rows("protocol"), Lines{});
}

TEST_F(FaultPlanTest, TheNumberedCallFailsWhateverItIs) {
  faults_.FailCallNumber(2, BCM_E_TIMEOUT);
  EXPECT_EQ(fm_init(), 0);
  EXPECT_EQ(CreateIntf(), BCM_E_TIMEOUT);
  EXPECT_EQ(CreateIntf(), 1);
  EXPECT_TRUE(faults_.empty());
}

TEST_F(FaultPlanTest, AccessesAndLogLinesHaveNoNumber) {
  faults_.FailCallNumber(1, BCM_E_TIMEOUT);
  IntfObject object;
  object.vrf();
  manager_.intf_mng();
  EXPECT_EQ(CreateIntf(), BCM_E_TIMEOUT);
}

TEST_F(FaultPlanTest, ANumberedCallWithoutAResultIsMadeAllTheSame) {
  TunnelObject tunnel;
  faults_.FailCallNumber(1, BCM_E_TIMEOUT);
  tunnel.set_type(TunnelObject::kTunnelTypeMpls);
  EXPECT_EQ(tunnel.type(), TunnelObject::kTunnelTypeMpls);
  faults_.FailCallNumber(1, BCM_E_TIMEOUT);
  EXPECT_NE(fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(1), nullptr);
  EXPECT_EQ(faults_.NotHappened().size(), 2u);
}

TEST_F(FaultPlanTest, FaultsThatHaveNotHappenedAreTold) {
  const auto late = faults_.FailNth("IntfManager::CreateIntf", 3, BCM_E_FULL);
  const auto never = faults_.FailEvery("IntfManager::DeleteIntf", BCM_E_FAIL);
  const auto soon = faults_.FailCallNumber(1, BCM_E_TIMEOUT);
  EXPECT_EQ((std::vector<std::size_t>{late, never, soon}), (std::vector<std::size_t>{1, 2, 3}));
  CreateIntf();
  CreateIntf();
  const auto waiting = faults_.NotHappened();
  ASSERT_EQ(waiting.size(), 2u);
  EXPECT_EQ(waiting[0].fault, late);
  EXPECT_EQ(waiting[0].calls, 2u);
  EXPECT_EQ(waiting[1].fault, never);
  EXPECT_EQ(waiting[1].calls, 0u);

  CreateIntf();
  intfs_.DeleteIntf(0, 1);
  EXPECT_TRUE(faults_.NotHappened().empty());
}

TEST_F(FaultPlanTest, NamesThatNoFunctionHasAndFunctionsWithoutAResultAreRefused) {
  EXPECT_THROW(faults_.FailNth("IntfManager::CreatIntf", 1, -1), std::invalid_argument);
  EXPECT_THROW(faults_.FailEvery("IntfManager::CreatIntf", -1), std::invalid_argument);
  EXPECT_THROW(faults_.FailNth("TunnelObject::set_ttl", 1, -1), std::invalid_argument);
  EXPECT_TRUE(faults_.empty());
}

TEST_F(FaultPlanTest, OfTwoFaultsForOneCallTheFirstPlannedHappensAndBothAreSpent) {
  faults_.FailNth("IntfManager::CreateIntf", 1, BCM_E_FULL);
  faults_.FailCallNumber(1, BCM_E_TIMEOUT);
  EXPECT_EQ(CreateIntf(), BCM_E_FULL);
  EXPECT_EQ(CreateIntf(), 1);
  EXPECT_TRUE(faults_.empty());
}

TEST_F(FaultPlanTest, FaultsAreCountedEachFromWhenItWasPlanned) {
  faults_.FailNth("fm_init", 2, -1);
  fm_init();
  faults_.FailNth("fm_init", 2, -2);
  EXPECT_EQ(fm_init(), -1);
  EXPECT_EQ(fm_init(), -2);
  EXPECT_EQ(fm_init(), 0);
}

TEST_F(FaultPlanTest, AFailedCreateGivesNoIdAway) {
  faults_.FailNth("EgressManager::CreateEgress", 1, BCM_E_FULL);
  EXPECT_EQ(CreateEgress(-1), BCM_E_FULL);
  EXPECT_EQ(CreateEgress(-1), 100001);
}

TEST_F(FaultPlanTest, CreatingAnInterfaceIsOneCallAndNoUpdate) {
  faults_.FailEvery("IntfManager::UpdateIntf", BCM_E_FAIL);
  card_.log().Clear();
  EXPECT_EQ(CreateIntf(), 1);
  EXPECT_EQ(Log().size(), 1u);
  EXPECT_EQ(intfs_.UpdateIntf(1, 0, 1, 100, router_mac_, 1500, 0), BCM_E_FAIL);
}

TEST_F(FaultPlanTest, AFailedCallStillTellsWhatItWasAsked) {
  faults_.FailNth("bcm_mpls_tunnel_initiator_clear", 1, -77);
  EXPECT_EQ(bcm_mpls_tunnel_initiator_clear(0, 5), -77);
  EXPECT_EQ(LastLine(), "bcm_mpls_tunnel_initiator_clear(unit=0, intf=5) = -77 (Unknown error)");
}

TEST_F(FaultPlanTest, ThereIsNoCallZero) {
  EXPECT_THROW(faults_.FailNth("fm_init", 0, -1), std::invalid_argument);
  EXPECT_THROW(faults_.FailCallNumber(0, -1), std::invalid_argument);
  EXPECT_TRUE(faults_.empty());
}

}  // namespace
