#include "tests/softcard/OnCard.h"

namespace {

using MyStationTest = OnCard;

TEST_F(MyStationTest, InsertRefusesAVlanThatHasAnEntry) {
  EXPECT_EQ(stations_.InsertMyStationVlanEntry(100, 4095, router_mac_, 0x20), BCM_E_NONE);
  EXPECT_EQ(stations_.InsertMyStationVlanEntry(100, 4095, host_mac_, 0), BCM_E_EXISTS);
  EXPECT_EQ(Rows("stations"), Lines{"station 100: mask=0xfff mac=00:00:5e:00:01:01 flags=0x20"});
}

TEST_F(MyStationTest, UpdateWritesAVlanWithOrWithoutAnEntry) {
  EXPECT_EQ(stations_.UpdateMyStationVlanEntry(100, 4095, router_mac_, 0x20), BCM_E_NONE);
  EXPECT_EQ(stations_.UpdateMyStationVlanEntry(100, 1, host_mac_, 0), BCM_E_NONE);
  EXPECT_EQ(Rows("stations"), Lines{"station 100: mask=0x1 mac=02:00:00:00:00:0a flags=0x0"});
}

TEST_F(MyStationTest, ANullMacIsABadParameter) {
  EXPECT_EQ(stations_.InsertMyStationVlanEntry(100, 4095, nullptr, 0), BCM_E_PARAM);
  EXPECT_EQ(stations_.UpdateMyStationVlanEntry(100, 4095, nullptr, 0), BCM_E_PARAM);
  EXPECT_EQ(Rows("stations"), Lines{});
}

TEST_F(MyStationTest, NumbersThatAreNoVlansAreRefused) {
  for (const unsigned int vlan_id : {0u, 4095u, 0x10064u}) {
    EXPECT_EQ(stations_.InsertMyStationVlanEntry(vlan_id, 4095, router_mac_, 0), BCM_E_PARAM) << vlan_id;
    EXPECT_EQ(stations_.UpdateMyStationVlanEntry(vlan_id, 4095, router_mac_, 0), BCM_E_PARAM) << vlan_id;
    EXPECT_EQ(stations_.RemoveMyStationVlanEntry(vlan_id), BCM_E_PARAM) << vlan_id;
  }
  for (const unsigned int vlan_id : {1u, 4094u}) {
    EXPECT_EQ(stations_.InsertMyStationVlanEntry(vlan_id, 4095, router_mac_, 0), BCM_E_NONE) << vlan_id;
  }
}

TEST_F(MyStationTest, RemovingAnEntryThatIsNotThereIsNotFound) {
  EXPECT_EQ(stations_.RemoveMyStationVlanEntry(100), BCM_E_NOT_FOUND);
  stations_.InsertMyStationVlanEntry(100, 4095, router_mac_, 0);
  EXPECT_EQ(stations_.RemoveMyStationVlanEntry(100), BCM_E_NONE);
  EXPECT_EQ(stations_.RemoveMyStationVlanEntry(100), BCM_E_NOT_FOUND);
}

TEST_F(MyStationTest, AFullTableRefusesNewEntriesOnly) {
  softcard::CardDescription description;
  description.vlans = 1;
  card_.Reset(description);
  stations_.InsertMyStationVlanEntry(100, 4095, router_mac_, 0);
  EXPECT_EQ(stations_.InsertMyStationVlanEntry(200, 4095, router_mac_, 0), BCM_E_FULL);
  EXPECT_EQ(stations_.UpdateMyStationVlanEntry(200, 4095, router_mac_, 0), BCM_E_FULL);
  EXPECT_EQ(stations_.InsertMyStationVlanEntry(100, 4095, router_mac_, 0), BCM_E_EXISTS);
  EXPECT_EQ(stations_.UpdateMyStationVlanEntry(100, 4095, host_mac_, 0), BCM_E_NONE);
}

}  // namespace
