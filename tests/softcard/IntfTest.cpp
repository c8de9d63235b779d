#include "tests/softcard/OnCard.h"

namespace {

class IntfTest : public OnCard {
 protected:
  static softcard::CardDescription WithRoomFor(unsigned intfs) {
    softcard::CardDescription description;
    description.intfs = intfs;
    return description;
  }
};

TEST_F(IntfTest, AnInterfaceHoldsWhatItWasCreatedWith) {
  const int intf = intfs_.CreateIntf(0, 7, 4094, router_mac_, 9000, 0x21);
  ASSERT_EQ(intf, 1);
  IntfObject* const object = Intf(intf);
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(object->id(), 1);
  EXPECT_EQ(object->vrf(), 7u);
  EXPECT_EQ(object->vlan_id(), 4094u);
  EXPECT_EQ(object->macsa(), (MacAddress{0x00, 0x00, 0x5e, 0x00, 0x01, 0x01}));
  EXPECT_EQ(object->mtu(), 9000u);
  EXPECT_EQ(object->l3_flags(), 0x21u);
  EXPECT_EQ(object->tunnel().type(), TunnelObject::kTunnelTypeNone);
  EXPECT_EQ(Rows("intfs"), Lines{"intf 1: vrf=7 vlan=4094 mac=00:00:5e:00:01:01 mtu=9000 flags=0x21 tunnel=none"});
}

TEST_F(IntfTest, UpdateKeepsTheIdTheObjectAndItsTunnel) {
  const int intf = CreateIntf();
  IntfObject* const object = Intf(intf);
  object->tunnel().set_type(TunnelObject::kTunnelTypeMpls);
  EXPECT_EQ(intfs_.UpdateIntf(intf, 0, 2, 200, host_mac_, 1400, 1), intf);
  EXPECT_EQ(Intf(intf), object);
  EXPECT_EQ(Rows("intfs"), Lines{"intf 1: vrf=2 vlan=200 mac=02:00:00:00:00:0a mtu=1400 flags=0x1 tunnel=mpls"});
}

TEST_F(IntfTest, CreateAndUpdateRefuseBadParameters) {
  const int intf = CreateIntf();
  const Lines before = Rows("intfs");
  EXPECT_EQ(intfs_.CreateIntf(0, 1, 100, nullptr, 1500, 0), BCM_E_PARAM);
  EXPECT_EQ(intfs_.UpdateIntf(intf, 0, 1, 100, nullptr, 1500, 0), BCM_E_PARAM);
  for (const unsigned int vlan_id : {0u, 4095u, 4096u + 100u, 0xFFFFFFFFu}) {
    EXPECT_EQ(intfs_.CreateIntf(0, 1, vlan_id, router_mac_, 1500, 0), BCM_E_PARAM) << vlan_id;
    EXPECT_EQ(intfs_.UpdateIntf(intf, 0, 1, vlan_id, router_mac_, 1500, 0), BCM_E_PARAM) << vlan_id;
  }
  EXPECT_EQ(intfs_.CreateIntf(0, 1, 100, router_mac_, 0, 0), BCM_E_PARAM);
  EXPECT_EQ(intfs_.UpdateIntf(intf, 0, 1, 100, router_mac_, 0, 0), BCM_E_PARAM);
  EXPECT_EQ(Rows("intfs"), before);
}

TEST_F(IntfTest, TheFirstAndTheLastVlanAndTheSmallestMtuAreGood) {
  EXPECT_GT(intfs_.CreateIntf(0, 0, 1, router_mac_, 1, 0), 0);
  EXPECT_GT(intfs_.CreateIntf(0, 0, 4094, router_mac_, 1, 0), 0);
}

TEST_F(IntfTest, AnotherUnitIsRefused) {
  const int intf = CreateIntf();
  EXPECT_EQ(intfs_.CreateIntf(1, 1, 100, router_mac_, 1500, 0), BCM_E_UNIT);
  EXPECT_EQ(intfs_.UpdateIntf(intf, 1, 1, 200, router_mac_, 1500, 0), BCM_E_UNIT);
  EXPECT_EQ(intfs_.DeleteIntf(-1, intf), BCM_E_UNIT);
  EXPECT_EQ(Rows("intfs"), Lines{"intf 1: vrf=1 vlan=100 mac=00:00:5e:00:01:01 mtu=1500 flags=0x0 tunnel=none"});
}

TEST_F(IntfTest, AnUnknownInterfaceIsNotFound) {
  EXPECT_EQ(intfs_.UpdateIntf(1, 0, 1, 100, router_mac_, 1500, 0), BCM_E_NOT_FOUND);
  EXPECT_EQ(intfs_.DeleteIntf(0, 1), BCM_E_NOT_FOUND);
}

TEST_F(IntfTest, APointerToAnObjectThatIsNotFoundLeadsNowhere) {
  IntfObject* object = nullptr;
  EXPECT_FALSE(intfs_.GetIntfObject(1, &object));
  EXPECT_NE(object, nullptr);

  IntfObject* const found = Intf(CreateIntf());
  object = found;
  card_.faults().FailNth("IntfManager::GetIntfObject", 1, 0);
  EXPECT_FALSE(intfs_.GetIntfObject(1, &object));
  EXPECT_NE(object, nullptr);
  EXPECT_NE(object, found);
}

TEST_F(IntfTest, ADeletedInterfaceIsGone) {
  const int intf = CreateIntf();
  EXPECT_EQ(intfs_.DeleteIntf(0, intf), BCM_E_NONE);
  EXPECT_EQ(Intf(intf), nullptr);
  EXPECT_EQ(intfs_.DeleteIntf(0, intf), BCM_E_NOT_FOUND);
  EXPECT_EQ(Rows("intfs"), Lines{});
}

TEST_F(IntfTest, IdsCountUpAndARefusedCreateTakesNone) {
  EXPECT_EQ(CreateIntf(), 1);
  EXPECT_EQ(CreateIntf(0), BCM_E_PARAM);
  EXPECT_EQ(CreateIntf(), 2);
  intfs_.DeleteIntf(0, 1);
  EXPECT_EQ(CreateIntf(), 3);
}

TEST_F(IntfTest, AFullTableRefusesUntilOneIsDeleted) {
  card_.Reset(WithRoomFor(2));
  CreateIntf();
  CreateIntf();
  EXPECT_EQ(CreateIntf(), BCM_E_FULL);
  EXPECT_EQ(CreateIntf(0), BCM_E_PARAM);
  EXPECT_EQ(intfs_.UpdateIntf(1, 0, 1, 200, router_mac_, 1500, 0), 1);
  intfs_.DeleteIntf(0, 1);
  EXPECT_EQ(CreateIntf(), 3);
}

TEST_F(IntfTest, ObjectsSayWhatTheyAre) {
  IntfObject* const object = Intf(CreateIntf());
  EXPECT_EQ(object->ToString(false), "intf 1: vrf=1 vlan=100 mac=00:00:5e:00:01:01 mtu=1500 flags=0x0");
  EXPECT_EQ(object->ToString(true), Rows("intfs").front());
  EXPECT_EQ(HwObject().ToString(true), "vlan=0");
}

TEST_F(IntfTest, AnObjectOfOnesOwnIsEmpty) {
  EXPECT_EQ(IntfObject().ToString(true), "intf 0: vrf=0 vlan=0 mac=00:00:00:00:00:00 mtu=0 flags=0x0 tunnel=none");
}

}  // namespace
