#include "tests/external/Card.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <map>

#include "bcm/error.h"
#include "bcm/mpls.h"
#include "bcm/switch.h"
#include "hal/HalBcmCommon.h"
#include "hal/HalCallbacksItf.h"
#include "hal/HwEncapsulationResourceManager.h"
#include "hal/IntfObject.h"
#include "hal/fm.h"
#include "hal/limid.h"

std::vector<std::string>& Calls() {
  static std::vector<std::string> calls;
  return calls;
}

namespace {

template <typename... Values>
int Called(int result, const char* function, Values... values) {
  std::string call = function;
  ((call += " " + std::to_string(values)), ...);
  Calls().push_back(call);
  return result;
}

class Intfs : public IntfManager {
 public:
  int CreateIntf(unsigned unit, int vrf, unsigned vlan, unsigned char* mac, unsigned mtu, unsigned flags) override {
    const int intf = static_cast<int>(intfs_.size()) + 1;
    return UpdateIntf(intf, unit, vrf, vlan, mac, mtu, flags);
  }
  int UpdateIntf(int intf, unsigned, int vrf, unsigned vlan, unsigned char* mac, unsigned mtu,
                 unsigned flags) override {
    IntfObject& object = intfs_[intf];
    object.number = intf;
    object.vrf_number = static_cast<unsigned>(vrf);
    object.vlan = vlan;
    std::memcpy(object.mac.data(), mac, object.mac.size());
    object.mtu_bytes = mtu;
    object.flags = flags;
    return Called(intf, "intf", intf, vrf, vlan, mtu, flags);
  }
  int DeleteIntf(int, int intf) override {
    intfs_.erase(intf);
    return Called(0, "delete-intf", intf);
  }
  bool GetIntfObject(int intf, IntfObject** object) override {
    const auto found = intfs_.find(intf);
    if (found != intfs_.end()) *object = &found->second;
    return found != intfs_.end();
  }

 private:
  std::map<int, IntfObject> intfs_;
};

struct Log : HalCallbacksItf {
  bool wants(int) const override { return true; }
  void log(int level, const char* format, ...) override {
    char line[256];
    va_list values;
    va_start(values, format);
    std::vsnprintf(line, sizeof(line), format, values);
    va_end(values);
    if (level < 7) Calls().push_back(line);
  }
};

}  // namespace

extern "C" {

const char* const _shr_errmsg[24] = {"Ok"};

int bcm_switch_control_set(int unit, bcm_switch_control_t type, int arg) {
  return Called(0, "switch", unit, type, arg);
}

void bcm_mpls_egress_label_t_init(bcm_mpls_egress_label_t* label) { *label = {}; }
int bcm_mpls_tunnel_initiator_set(int, int intf, int count, bcm_mpls_egress_label_t* labels) {
  return Called(0, "initiator", intf, count, labels[0].label, labels[1].label, labels[0].ttl, labels[0].qos_map_id);
}
int bcm_mpls_tunnel_initiator_clear(int, int intf) { return Called(0, "clear-initiator", intf); }

int limid_to_type(limid_t id, uint8_t* type) { return *type = static_cast<uint8_t>(id.raw >> 24), 0; }
int limid_to_ifindex(limid_t id, uint32_t* ifindex) { return *ifindex = id.raw & 0xFFFFFF, 0; }
int limid_to_intfname(limid_t, char* buffer, size_t) { return *buffer = '\0', 0; }
int limid_is_from_type(limid_t id, limid_type_t type) { return id.raw >> 24 == type; }
int limid_is_from_type_ethernet(limid_t id) { return id.raw >> 24 == kEthernet; }
unsigned limid_to_l3_vlan_vlanid(limid_t id) { return id.raw & 0xFFFFFF; }

int fm_init() { return 0; }
fm_slot_t fm_local_slot() { return 3; }
fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(fm_slot_t) {
  return [](int, uint16_t vlan) { return Called(0, "protocol", vlan); };
}
fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(fm_slot_t) {
  return [](int, uint16_t vlan) { return Called(0, "no-protocol", vlan); };
}
}

HalCallbacksItf* HalCallbacksItf::getInstance() {
  static Log log;
  return &log;
}

HalBcmCommon* HalBcmCommon::GetInstance() {
  static HalBcmCommon common{5, {{limid_t{kEthernet << 24 | 1}, 101}}, {}, {}, "sample"};
  return &common;
}
int HalBcmCommon::GetMplsExpMapId() const { return 9; }

std::string TunnelObject::TunnelTypeToString(EnumTunnelType type) { return std::to_string(type); }
std::string IntfObject::ToString(bool) const { return "intf " + std::to_string(number); }

int EgressManager::CreateEgress(int intf, unsigned char*, unsigned short vlan, int unit, int port, unsigned, bool, bool,
                                ExpLabelControl control, int) {
  return Called(40, "egress", intf, vlan, unit, port, control);
}
int EgressManager::DeleteEgress(int egress) { return Called(0, "delete-egress", egress); }

int IngressManager::AssociateVlanToVrf(int vlan, unsigned vrf) { return Called(0, "associate", vlan, vrf); }
int IngressManager::DissociateVlanfromVrf(int vlan, unsigned vrf) { return Called(0, "dissociate", vlan, vrf); }
int IngressManager::CreateIngress(int unit, unsigned vrf, unsigned) const { return Called(0, "vrf", unit, vrf); }
int IngressManager::DeleteIngress(int unit, unsigned vrf) const { return Called(0, "delete-vrf", unit, vrf); }

int MyStationManager::InsertMyStationVlanEntry(unsigned vlan, unsigned mask, const unsigned char*, unsigned flags) {
  return ++entries_, Called(0, "station", vlan, mask, flags);
}
int MyStationManager::RemoveMyStationVlanEntry(unsigned vlan) { return --entries_, Called(0, "delete-station", vlan); }

HwEncapsulationResourceManager* HwEncapsulationResourceManager::GetInstance() {
  static HwEncapsulationResourceManager manager;
  return &manager;
}
HwEncapsulationResourceManager::HwEncapsulationResourceManager() : intfs_(std::make_unique<Intfs>()) {}
HwEncapsulationResourceManager::~HwEncapsulationResourceManager() = default;
std::string HwEncapsulationResourceManager::ToString(bool) const { return "resources"; }

#ifdef WHOLE_CARD
int EgressManager::UpdateEgress(int egress, int intf, unsigned char*, unsigned short, int, int port, unsigned, bool,
                                bool, ExpLabelControl) {
  return Called(egress, "update-egress", egress, intf, port);
}
int MyStationManager::UpdateMyStationVlanEntry(unsigned vlan, unsigned mask, const unsigned char*, unsigned flags) {
  return Called(0, "update-station", vlan, mask, flags);
}
#endif
