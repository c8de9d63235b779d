/// Every function that the module calls, defined in the platform's place: a line each. Compiled twice: for the
/// recorder, which notes the call and hands it on, and for the player, which answers as recorded.

#include "bcm/mpls.h"
#include "bcm/switch.h"
#include "hal/EgressManager.h"
#include "hal/HalBcmCommon.h"
#include "hal/HwEncapsulationResourceManager.h"
#include "hal/IngressManager.h"
#include "hal/IntfManager.h"
#include "hal/IntfObject.h"
#include "hal/MyStationManager.h"
#include "hal/fm.h"
#include "hal/limid.h"
#ifdef RECORDER_PLAYER
#include "recorder/Answer.h"
#else
#include "recorder/Note.h"
#endif

using calls::Named;
using namespace recorder;

extern "C" {

int fm_init(void) { return Plain<Named("fm_init"), int>(); }
fm_slot_t fm_local_slot(void) { return Plain<Named("fm_local_slot"), int>(); }

int bcm_switch_control_set(int unit, bcm_switch_control_t type, int arg) {
  return Plain<Named("bcm_switch_control_set"), int>(unit, type, arg);
}
void bcm_mpls_egress_label_t_init(bcm_mpls_egress_label_t* label) {
  Plain<Named("bcm_mpls_egress_label_t_init"), void>(label);
}
int bcm_mpls_tunnel_initiator_set(int unit, int intf, int num_labels, bcm_mpls_egress_label_t* label_array) {
  return Plain<Named("bcm_mpls_tunnel_initiator_set"), int>(unit, intf, num_labels, label_array);
}
int bcm_mpls_tunnel_initiator_clear(int unit, int intf) {
  return Plain<Named("bcm_mpls_tunnel_initiator_clear"), int>(unit, intf);
}

int limid_to_type(limid_t limid, unsigned char* type) { return Plain<Named("limid_to_type"), int>(limid, type); }
int limid_to_ifindex(limid_t limid, unsigned int* ifindex) {
  return Plain<Named("limid_to_ifindex"), int>(limid, ifindex);
}
int limid_to_intfname(limid_t limid, char* name, size_t size) {
  return Plain<Named("limid_to_intfname"), int>(limid, name, size);
}
int limid_is_from_type(limid_t limid, limid_type_t type) {
  return Plain<Named("limid_is_from_type"), int>(limid, type);
}
int limid_is_from_type_ethernet(limid_t limid) { return Plain<Named("limid_is_from_type_ethernet"), int>(limid); }
unsigned int limid_to_l3_vlan_vlanid(limid_t limid) { return Plain<Named("limid_to_l3_vlan_vlanid"), unsigned>(limid); }
}

int HalBcmCommon::GetMplsExpMapId() { return Member<Named("HalBcmCommon::GetMplsExpMapId"), int>(this); }

int IngressManager::CreateIngress(int unit, unsigned int vrf, unsigned int flags) {
  return Member<Named("IngressManager::CreateIngress"), int>(this, unit, vrf, flags);
}
int IngressManager::DeleteIngress(int unit, unsigned int vrf) {
  return Member<Named("IngressManager::DeleteIngress"), int>(this, unit, vrf);
}
int IngressManager::AssociateVlanToVrf(int vlan_id, unsigned int vrf) {
  return Member<Named("IngressManager::AssociateVlanToVrf"), int>(this, vlan_id, vrf);
}
int IngressManager::DissociateVlanfromVrf(int vlan_id, unsigned int vrf) {
  return Member<Named("IngressManager::DissociateVlanfromVrf"), int>(this, vlan_id, vrf);
}

int MyStationManager::InsertMyStationVlanEntry(unsigned int vlan_id, unsigned int vlan_mask, const unsigned char* mac,
                                               unsigned int flags) {
  return Member<Named("MyStationManager::InsertMyStationVlanEntry"), int>(this, vlan_id, vlan_mask, mac, flags);
}
int MyStationManager::UpdateMyStationVlanEntry(unsigned int vlan_id, unsigned int vlan_mask, const unsigned char* mac,
                                               unsigned int flags) {
  return Member<Named("MyStationManager::UpdateMyStationVlanEntry"), int>(this, vlan_id, vlan_mask, mac, flags);
}
int MyStationManager::RemoveMyStationVlanEntry(unsigned int vlan_id) {
  return Member<Named("MyStationManager::RemoveMyStationVlanEntry"), int>(this, vlan_id);
}

int IntfManager::CreateIntf(unsigned int unit, int vrf, unsigned int vlan_id, unsigned char* mac, unsigned int mtu,
                            unsigned int l3_flags) {
  return Member<Named("IntfManager::CreateIntf"), int>(this, unit, vrf, vlan_id, mac, mtu, l3_flags);
}
int IntfManager::UpdateIntf(int intf, unsigned int unit, int vrf, unsigned int vlan_id, unsigned char* mac,
                            unsigned int mtu, unsigned int l3_flags) {
  return Member<Named("IntfManager::UpdateIntf"), int>(this, intf, unit, vrf, vlan_id, mac, mtu, l3_flags);
}
int IntfManager::DeleteIntf(int unit, int intf) {
  return Member<Named("IntfManager::DeleteIntf"), int>(this, unit, intf);
}
bool IntfManager::GetIntfObject(int intf, IntfObject** object) {
  return Member<Named("IntfManager::GetIntfObject"), bool>(this, intf, object);
}

int EgressManager::CreateEgress(int intf, unsigned char* mac, unsigned short vlan_id, int unit, int port,
                                unsigned int label, bool to_cpu, bool drop, ExpLabelControl control) {
  return Member<Named("EgressManager::CreateEgress"), int>(this, intf, mac, vlan_id, unit, port, label, to_cpu, drop,
                                                           control);
}
int EgressManager::UpdateEgress(int egress, int intf, unsigned char* mac, unsigned short vlan_id, int unit, int port,
                                unsigned int label, bool to_cpu, bool drop, ExpLabelControl control) {
  return Member<Named("EgressManager::UpdateEgress"), int>(this, egress, intf, mac, vlan_id, unit, port, label, to_cpu,
                                                           drop, control);
}
int EgressManager::DeleteEgress(int egress) { return Member<Named("EgressManager::DeleteEgress"), int>(this, egress); }

HwEncapsulationResourceManager* HwEncapsulationResourceManager::GetInstance() {
  return Plain<Named("HwEncapsulationResourceManager::GetInstance"), HwEncapsulationResourceManager*>();
}
std::string HwEncapsulationResourceManager::ToString(bool deep) const {
  return Member<Named("HwEncapsulationResourceManager::ToString"), std::string>(this, deep);
}
IntfManager* HwEncapsulationResourceManager::intf_mng() {
  return Member<Named("HwEncapsulationResourceManager::intf_mng"), IntfManager*>(this);
}
EgressManager* HwEncapsulationResourceManager::egress_mng() {
  return Member<Named("HwEncapsulationResourceManager::egress_mng"), EgressManager*>(this);
}
IngressManager* HwEncapsulationResourceManager::ingress_mng() {
  return Member<Named("HwEncapsulationResourceManager::ingress_mng"), IngressManager*>(this);
}
MyStationManager* HwEncapsulationResourceManager::my_station_mng() {
  return Member<Named("HwEncapsulationResourceManager::my_station_mng"), MyStationManager*>(this);
}

unsigned int HwObject::vlan_id() const { return Member<Named("HwObject::vlan_id"), unsigned>(this); }
std::string HwObject::ToString(bool deep) const { return Member<Named("HwObject::ToString"), std::string>(this, deep); }

int IntfObject::id() const { return Member<Named("IntfObject::id"), int>(this); }
unsigned int IntfObject::vrf() const { return Member<Named("IntfObject::vrf"), unsigned>(this); }
MacAddress IntfObject::macsa() const { return Member<Named("IntfObject::macsa"), MacAddress>(this); }
unsigned int IntfObject::mtu() const { return Member<Named("IntfObject::mtu"), unsigned>(this); }
unsigned int IntfObject::l3_flags() const { return Member<Named("IntfObject::l3_flags"), unsigned>(this); }
TunnelObject& IntfObject::tunnel() { return *Member<Named("IntfObject::tunnel"), TunnelObject*>(this); }

TunnelObject::EnumTunnelType TunnelObject::type() const {
  return Member<Named("TunnelObject::type"), EnumTunnelType>(this);
}
void TunnelObject::set_type(EnumTunnelType type) { Member<Named("TunnelObject::set_type"), void>(this, type); }
void TunnelObject::set_ttl(unsigned int ttl) { Member<Named("TunnelObject::set_ttl"), void>(this, ttl); }
void TunnelObject::set_mpls_capability(en_HalMplsCapabilities capability) {
  Member<Named("TunnelObject::set_mpls_capability"), void>(this, capability);
}
std::string TunnelObject::TunnelTypeToString(EnumTunnelType type) {
  return Plain<Named("TunnelObject::TunnelTypeToString"), std::string>(type);
}
