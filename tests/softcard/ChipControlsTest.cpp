#include "bcm/switch.h"
#include "hal/fm.h"
#include "tests/softcard/OnCard.h"

namespace {

class ChipControlsTest : public OnCard {
 protected:
  static int Enable(int unit, unsigned short vlan_id) {
    return fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(fm_local_slot())(unit, vlan_id);
  }
  static int Disable(int unit, unsigned short vlan_id) {
    return fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(fm_local_slot())(unit, vlan_id);
  }
};

TEST_F(ChipControlsTest, SwitchControlsKeepTheLastMode) {
  EXPECT_EQ(Rows("switch"), Lines{});
  EXPECT_EQ(bcm_switch_control_set(0, bcmSwitchL3EgressMode, 1), BCM_E_NONE);
  EXPECT_EQ(bcm_switch_control_set(0, bcmSwitchL3IngressMode, 1), BCM_E_NONE);
  EXPECT_EQ(bcm_switch_control_set(0, bcmSwitchL3IngressMode, 0), BCM_E_NONE);
  EXPECT_EQ(Rows("switch"), (Lines{"switch bcmSwitchL3EgressMode: mode=1", "switch bcmSwitchL3IngressMode: mode=0"}));
}

TEST_F(ChipControlsTest, UnknownSwitchControlsModesAndUnitsAreRefused) {
  EXPECT_EQ(bcm_switch_control_set(0, static_cast<bcm_switch_control_t>(231), 1), BCM_E_UNAVAIL);
  EXPECT_EQ(bcm_switch_control_set(0, bcmSwitchL3EgressMode, 2), BCM_E_PARAM);
  EXPECT_EQ(bcm_switch_control_set(0, bcmSwitchL3EgressMode, -1), BCM_E_PARAM);
  EXPECT_EQ(bcm_switch_control_set(1, bcmSwitchL3EgressMode, 1), BCM_E_UNIT);
  EXPECT_EQ(Rows("switch"), Lines{});
}

TEST_F(ChipControlsTest, ProtocolControlIsSwitchedOnAndOffByTheCardsOwnOperations) {
  EXPECT_EQ(Enable(0, 100), BCM_E_NONE);
  EXPECT_EQ(Enable(0, 4094), BCM_E_NONE);
  EXPECT_EQ(Rows("protocol"), (Lines{"protocol 100: control=on", "protocol 4094: control=on"}));
  EXPECT_EQ(Disable(0, 100), BCM_E_NONE);
  EXPECT_EQ(Rows("protocol"), Lines{"protocol 4094: control=on"});
}

TEST_F(ChipControlsTest, ProtocolControlIsRefusedForNumbersThatAreNoVlans) {
  for (const unsigned short vlan_id : std::initializer_list<unsigned short>{0, 4095, 65535}) {
    EXPECT_EQ(Enable(0, vlan_id), BCM_E_PARAM) << vlan_id;
    EXPECT_EQ(Disable(0, vlan_id), BCM_E_PARAM) << vlan_id;
  }
}

TEST_F(ChipControlsTest, SwitchingProtocolControlToWhatItIsIsASuccess) {
  EXPECT_EQ(Disable(0, 100), BCM_E_NONE);
  Enable(0, 100);
  EXPECT_EQ(Enable(0, 100), BCM_E_NONE);
  EXPECT_EQ(Rows("protocol"), Lines{"protocol 100: control=on"});
}

TEST_F(ChipControlsTest, ProtocolControlRefusesAnotherUnitAndAFullTable) {
  softcard::CardDescription description;
  description.vlans = 1;
  card_.Reset(description);
  EXPECT_EQ(Enable(1, 100), BCM_E_UNIT);
  EXPECT_EQ(Enable(0, 100), BCM_E_NONE);
  EXPECT_EQ(Disable(1, 100), BCM_E_UNIT);
  EXPECT_EQ(Enable(0, 200), BCM_E_FULL);
  EXPECT_EQ(Enable(0, 100), BCM_E_NONE);
}

TEST_F(ChipControlsTest, TheSlotIsTheDescribedOneAndAnySlotHasOperations) {
  softcard::CardDescription description;
  description.slot = 9;
  card_.Reset(description);
  EXPECT_EQ(fm_init(), BCM_E_NONE);
  EXPECT_EQ(fm_local_slot(), 9);
  EXPECT_NE(fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(3), nullptr);
  EXPECT_NE(fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(3), nullptr);
}

}  // namespace
