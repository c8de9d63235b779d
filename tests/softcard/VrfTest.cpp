#include "tests/softcard/OnCard.h"

namespace {

using VrfTest = OnCard;

TEST_F(VrfTest, AVrfIsCreatedOnceAndDeletedOnce) {
  EXPECT_EQ(ingress_.CreateIngress(0, 7, 0), BCM_E_NONE);
  EXPECT_EQ(ingress_.CreateIngress(0, 7, 0), BCM_E_EXISTS);
  EXPECT_EQ(Rows("vrfs"), Lines{"vrf 7: flags=0x0"});
  EXPECT_EQ(ingress_.DeleteIngress(0, 7), BCM_E_NONE);
  EXPECT_EQ(ingress_.DeleteIngress(0, 7), BCM_E_NOT_FOUND);
  EXPECT_EQ(Rows("vrfs"), Lines{});
}

TEST_F(VrfTest, TheDefaultVrfIsAlwaysThere) {
  EXPECT_EQ(ingress_.CreateIngress(0, 0, 0), BCM_E_EXISTS);
  EXPECT_EQ(ingress_.DeleteIngress(0, 0), BCM_E_PARAM);
  EXPECT_EQ(ingress_.AssociateVlanToVrf(100, 0), BCM_E_NONE);
  EXPECT_EQ(Rows("vrfs"), Lines{});
}

TEST_F(VrfTest, AnotherUnitIsRefused) {
  EXPECT_EQ(ingress_.CreateIngress(1, 7, 0), BCM_E_UNIT);
  ingress_.CreateIngress(0, 7, 0);
  EXPECT_EQ(ingress_.DeleteIngress(1, 7), BCM_E_UNIT);
  EXPECT_EQ(Rows("vrfs").size(), 1u);
}

TEST_F(VrfTest, AFullTableRefusesANewVrf) {
  softcard::CardDescription description;
  description.vrfs = 1;
  card_.Reset(description);
  ingress_.CreateIngress(0, 7, 0);
  EXPECT_EQ(ingress_.CreateIngress(0, 8, 0), BCM_E_FULL);
  EXPECT_EQ(ingress_.CreateIngress(0, 7, 0), BCM_E_EXISTS);
}

TEST_F(VrfTest, AVlanIsAssociatedWithOneVrf) {
  ingress_.CreateIngress(0, 1, 0);
  ingress_.CreateIngress(0, 2, 0);
  EXPECT_EQ(ingress_.AssociateVlanToVrf(100, 1), BCM_E_NONE);
  EXPECT_EQ(ingress_.AssociateVlanToVrf(100, 1), BCM_E_EXISTS);
  EXPECT_EQ(ingress_.AssociateVlanToVrf(100, 2), BCM_E_EXISTS);
  EXPECT_EQ(Rows("associations"), Lines{"association 100: vrf=1"});
}

TEST_F(VrfTest, AVlanIsNotAssociatedWithAVrfThatWasNotCreated) {
  EXPECT_EQ(ingress_.AssociateVlanToVrf(100, 1), BCM_E_NOT_FOUND);
  EXPECT_EQ(Rows("associations"), Lines{});
}

TEST_F(VrfTest, NumbersThatAreNoVlansAreRefused) {
  for (const int vlan_id : {-1, 0, 4095, 65636}) {
    EXPECT_EQ(ingress_.AssociateVlanToVrf(vlan_id, 0), BCM_E_PARAM) << vlan_id;
    EXPECT_EQ(ingress_.DissociateVlanfromVrf(vlan_id, 0), BCM_E_PARAM) << vlan_id;
  }
  EXPECT_EQ(ingress_.AssociateVlanToVrf(4094, 0), BCM_E_NONE);
}

TEST_F(VrfTest, OnlyTheAssociatedVrfCanBeTaken) {
  ingress_.CreateIngress(0, 1, 0);
  EXPECT_EQ(ingress_.DissociateVlanfromVrf(100, 1), BCM_E_NOT_FOUND);
  ingress_.AssociateVlanToVrf(100, 1);
  EXPECT_EQ(ingress_.DissociateVlanfromVrf(100, 2), BCM_E_NOT_FOUND);
  EXPECT_EQ(ingress_.DissociateVlanfromVrf(100, 1), BCM_E_NONE);
  EXPECT_EQ(ingress_.DissociateVlanfromVrf(100, 1), BCM_E_NOT_FOUND);
}

TEST_F(VrfTest, ADeletedVrfLeavesItsAssociationsWhichCanStillBeTaken) {
  ingress_.CreateIngress(0, 1, 0);
  ingress_.AssociateVlanToVrf(100, 1);
  EXPECT_EQ(ingress_.DeleteIngress(0, 1), BCM_E_NONE);
  EXPECT_EQ(Rows("associations"), Lines{"association 100: vrf=1"});
  EXPECT_EQ(ingress_.DissociateVlanfromVrf(100, 1), BCM_E_NONE);
}

TEST_F(VrfTest, AFullAssociationTableRefusesANewVlan) {
  softcard::CardDescription description;
  description.vlans = 1;
  card_.Reset(description);
  ingress_.AssociateVlanToVrf(100, 0);
  EXPECT_EQ(ingress_.AssociateVlanToVrf(200, 0), BCM_E_FULL);
  EXPECT_EQ(ingress_.AssociateVlanToVrf(100, 0), BCM_E_EXISTS);
}

}  // namespace
