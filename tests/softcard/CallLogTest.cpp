#include "bcm/mpls.h"
#include "bcm/switch.h"
#include "hal/HalCallbacksItf.h"
#include "hal/fm.h"
#include "tests/softcard/OnCard.h"

namespace {

using softcard::CallLog;
using softcard::Card;

class CallLogTest : public OnCard {
 protected:
  CallLogTest() { card_.log().Clear(); }
};

TEST_F(CallLogTest, InterfaceCallsPrintTheirArgumentsAndResults) {
  intfs_.CreateIntf(0, 1, 100, router_mac_, 1500, 0x20);
  intfs_.CreateIntf(0, -1, 100, nullptr, 1500, 0);
  intfs_.UpdateIntf(1, 0, 2, 200, router_mac_, 9000, 0);
  Intf(1);
  Intf(2);
  intfs_.DeleteIntf(0, 1);
  EXPECT_EQ(Shown(Log()), R"(
IntfManager::CreateIntf(unit=0, vrf=1, vlan=100, mac=00:00:5e:00:01:01, mtu=1500, flags=0x20) = 1
IntfManager::CreateIntf(unit=0, vrf=-1, vlan=100, mac=null, mtu=1500, flags=0x0) = -4 (Invalid parameter)
IntfManager::UpdateIntf(intf=1, unit=0, vrf=2, vlan=200, mac=00:00:5e:00:01:01, mtu=9000, flags=0x0) = 1
IntfManager::GetIntfObject(intf=1) = true
IntfManager::GetIntfObject(intf=2) = false
IntfManager::DeleteIntf(unit=0, intf=1) = 0
)");
}

TEST_F(CallLogTest, EgressCallsPrintTheirArgumentsAndResults) {
  egresses_.CreateEgress(-1, host_mac_, 100, 0, 3, 0xFFFFFFFF, false, false, EXP_LABEL_CONTROL_NONE);
  egresses_.UpdateEgress(100001, -1, host_mac_, 100, 0, -18, 16, true, false, EXP_LABEL_CONTROL_VC);
  egresses_.DeleteEgress(7);
  EXPECT_EQ(Shown(Log()), R"(
EgressManager::CreateEgress(intf=-1, mac=02:00:00:00:00:0a, vlan=100, unit=0, port=3, label=none, to_cpu=false, drop=false, control=0) = 100001
EgressManager::UpdateEgress(egress=100001, intf=-1, mac=02:00:00:00:00:0a, vlan=100, unit=0, port=-18, label=16, to_cpu=true, drop=false, control=2) = -18 (No such port)
EgressManager::DeleteEgress(egress=7) = -7 (No such entry)
)");
}

TEST_F(CallLogTest, IngressAndMyStationCallsPrintTheirArgumentsAndResults) {
  ingress_.CreateIngress(0, 1, 0);
  ingress_.AssociateVlanToVrf(100, 1);
  ingress_.DissociateVlanfromVrf(100, 1);
  ingress_.DeleteIngress(0, 1);
  stations_.InsertMyStationVlanEntry(100, 4095, router_mac_, 0x20);
  stations_.UpdateMyStationVlanEntry(100, 4095, nullptr, 0);
  stations_.RemoveMyStationVlanEntry(100);
  EXPECT_EQ(Shown(Log()), R"(
IngressManager::CreateIngress(unit=0, vrf=1, flags=0x0) = 0
IngressManager::AssociateVlanToVrf(vlan=100, vrf=1) = 0
IngressManager::DissociateVlanfromVrf(vlan=100, vrf=1) = 0
IngressManager::DeleteIngress(unit=0, vrf=1) = 0
MyStationManager::InsertMyStationVlanEntry(vlan=100, mask=0xfff, mac=00:00:5e:00:01:01, flags=0x20) = 0
MyStationManager::UpdateMyStationVlanEntry(vlan=100, mask=0xfff, mac=null, flags=0x0) = -4 (Invalid parameter)
MyStationManager::RemoveMyStationVlanEntry(vlan=100) = 0
)");
}

TEST_F(CallLogTest, ChipCallsPrintBothLabelRecordsFieldByField) {
  bcm_mpls_egress_label_t labels[2];
  bcm_mpls_egress_label_t_init(&labels[0]);
  labels[0] = {0x11, 100, 1, 0, 255};
  labels[1] = {0x1, 200, 0, 7, 64};
  bcm_switch_control_set(0, bcmSwitchL3EgressMode, 1);
  bcm_switch_control_set(0, static_cast<bcm_switch_control_t>(9), 1);
  bcm_mpls_tunnel_initiator_set(0, 5, 2, labels);
  bcm_mpls_tunnel_initiator_set(0, 5, 0, labels);
  bcm_mpls_tunnel_initiator_set(0, 5, 1, nullptr);
  bcm_mpls_tunnel_initiator_clear(0, 5);
  EXPECT_EQ(Shown(Log()), R"(
bcm_mpls_egress_label_t_init()
bcm_switch_control_set(unit=0, type=bcmSwitchL3EgressMode, arg=1) = 0
bcm_switch_control_set(unit=0, type=9, arg=1) = -16 (Unavailable)
bcm_mpls_tunnel_initiator_set(unit=0, intf=5, num_labels=2, labels=[{flags=0x11, label=100, qos_map=1, exp=0, ttl=255}, {flags=0x1, label=200, qos_map=0, exp=7, ttl=64}]) = -7 (No such entry)
bcm_mpls_tunnel_initiator_set(unit=0, intf=5, num_labels=0, labels=[]) = -7 (No such entry)
bcm_mpls_tunnel_initiator_set(unit=0, intf=5, num_labels=1, labels=null) = -4 (Invalid parameter)
bcm_mpls_tunnel_initiator_clear(unit=0, intf=5) = -16 (Unavailable)
)");
}

TEST_F(CallLogTest, CardCallsAndLimIdCallsPrintNames) {
  unsigned int index = 0;
  char name[64];
  unsigned char type = 0;
  fm_init();
  fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(fm_local_slot())(0, 100);
  fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(1)(0, 100);
  limid_to_type(softcard::LimId("eth3"), &type);
  limid_to_ifindex(softcard::LimId("lag2"), &index);
  limid_to_intfname(softcard::LimId("cpu"), name, sizeof name);
  limid_to_type({42}, &type);
  limid_is_from_type(softcard::LimId("cpu"), limid_type_lag);
  limid_is_from_type_ethernet(softcard::LimId("eth3"));
  limid_to_l3_vlan_vlanid(softcard::LimId("vlan100"));
  HalBcmCommon::GetInstance()->GetMplsExpMapId();
  EXPECT_EQ(Shown(Log()), R"(
fm_init() = 0
fm_local_slot() = 1
fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(slot=1)
vlan_proto_ctrl_enable(unit=0, vlan=100) = 0
fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(slot=1)
vlan_proto_ctrl_disable(unit=0, vlan=100) = 0
limid_to_type(limid=eth3) = 0
limid_to_ifindex(limid=lag2) = 0
limid_to_intfname(limid=cpu, size=64) = 0
limid_to_type(limid=0x2a) = -4 (Invalid parameter)
limid_is_from_type(limid=cpu, type=lag) = 0
limid_is_from_type_ethernet(limid=eth3) = 1
limid_to_l3_vlan_vlanid(limid=vlan100) = 100
HalBcmCommon::GetMplsExpMapId() = 1
)");
}

TEST_F(CallLogTest, ChangesOfTheTunnelObjectAreCalls) {
  TunnelObject tunnel;
  tunnel.set_ttl(255);
  tunnel.set_type(TunnelObject::kTunnelTypeMpls);
  tunnel.set_mpls_capability(HAL_MPLS_CAPABILITY_PUSH);
  EXPECT_EQ(Shown(Log()), R"(
TunnelObject::set_ttl(ttl=255)
TunnelObject::set_type(type=mpls)
TunnelObject::set_mpls_capability(capability=4)
)");
}

TEST_F(CallLogTest, LogLinesStandBetweenTheCallsWithTheirLevels) {
  HalCallbacksItf* const callbacks = HalCallbacksItf::getInstance();
  callbacks->log(7, "Installing %s on VLAN %d", "destination id(10)", 100);
  fm_init();
  callbacks->log(3, "100%% of %s", std::string(300, 'x').c_str());
  callbacks->log(4, "%s", "");
  EXPECT_EQ(Log(), (Lines{"log 7: Installing destination id(10) on VLAN 100", "fm_init() = 0",
                          "log 3: 100% of " + std::string(300, 'x'), "log 4: "}));
}

TEST_F(CallLogTest, AccessesAreKeptOnlyWhenAllIsRecorded) {
  const int intf = CreateIntf();
  IntfObject* const object = Intf(intf);
  card_.log().Clear();
  object->vrf();
  EXPECT_EQ(Log(), Lines{});

  const softcard::Record record(card_.log(), CallLog::Recording::kAll);
  HalBcmCommon::GetInstance();
  HalCallbacksItf::getInstance();
  HwEncapsulationResourceManager::GetInstance()->intf_mng();
  manager_.egress_mng();
  manager_.ingress_mng();
  manager_.my_station_mng();
  object->id();
  object->vrf();
  object->vlan_id();
  object->macsa();
  object->mtu();
  object->l3_flags();
  object->tunnel().type();
  object->ToString(false);
  manager_.ToString(false);
  TunnelObject::TunnelTypeToString(TunnelObject::kTunnelTypeMpls);
  EXPECT_EQ(Shown(Log()), R"(
HalBcmCommon::GetInstance()
HalCallbacksItf::getInstance()
HwEncapsulationResourceManager::GetInstance()
HwEncapsulationResourceManager::intf_mng()
HwEncapsulationResourceManager::egress_mng()
HwEncapsulationResourceManager::ingress_mng()
HwEncapsulationResourceManager::my_station_mng()
IntfObject::id() = 1
IntfObject::vrf() = 1
HwObject::vlan_id() = 100
IntfObject::macsa() = 00:00:5e:00:01:01
IntfObject::mtu() = 1500
IntfObject::l3_flags() = 0
IntfObject::tunnel()
TunnelObject::type() = none
IntfObject::ToString(deep=false) = intf 1: vrf=1 vlan=100 mac=00:00:5e:00:01:01 mtu=1500 flags=0x0
HwEncapsulationResourceManager::ToString(deep=false) = resources
TunnelObject::TunnelTypeToString(type=mpls) = mpls
)");
}

TEST_F(CallLogTest, NothingIsKeptWhenNothingIsRecorded) {
  const softcard::Record record(card_.log(), CallLog::Recording::kNothing);
  CreateIntf();
  HalCallbacksItf::getInstance()->log(7, "unseen");
  EXPECT_EQ(Log(), Lines{});
}

TEST_F(CallLogTest, EventsTellCallsFromLogLines) {
  fm_init();
  HalCallbacksItf::getInstance()->log(7, "line");
  ASSERT_EQ(card_.log().events().size(), 2u);
  EXPECT_STREQ(std::get<calls::Call>(card_.log().events()[0]).function->name, "fm_init");
  EXPECT_EQ(std::get<calls::LogLine>(card_.log().events()[1]).level, 7);
}

TEST_F(CallLogTest, ShowingTheTablesLeavesNoTrace) {
  CreateEgress(CreateIntf());
  card_.log().Clear();
  const softcard::Record record(card_.log(), CallLog::Recording::kAll);
  card_.faults().FailNth("IntfObject::vrf", 1, 77);
  for (const std::string& table : Card::TableNames()) Rows(table.c_str());
  EXPECT_EQ(Log(), Lines{});
  EXPECT_FALSE(card_.faults().empty());
}

}  // namespace
