// A platform whose every call returns at once: what a request costs on it is the module's own work. It is built twice:
// as it is for measuring, and with BARE_PLATFORM_TRACE to compare what two callers asked of it.

#include <cstdarg>

#include "bcm/error.h"
#include "bcm/mpls.h"
#include "bcm/switch.h"
#include "bench/Trace.h"
#include "hal/EgressManager.h"
#include "hal/HalBcmCommon.h"
#include "hal/HalCallbacksItf.h"
#include "hal/HwEncapsulationResourceManager.h"
#include "hal/IngressManager.h"
#include "hal/IntfManager.h"
#include "hal/IntfObject.h"
#include "hal/MyStationManager.h"
#include "hal/fm.h"

namespace {

constexpr int kIntf = 1;
constexpr int kEgress = 2;

IntfObject& Intf() {
  static IntfObject intf;
  return intf;
}

}  // namespace

#ifdef BARE_PLATFORM_TRACE
std::vector<std::string>& PlatformTrace() {
  static std::vector<std::string> trace;
  return trace;
}
#endif

extern "C" {

const char* const _shr_errmsg[] = {"", "", "", "", "", "", "", "", "", "", "", "", "", "", "", "", "", "", "", ""};

int bcm_switch_control_set(int, bcm_switch_control_t type, int arg) { return TRACED(0, type, arg); }

void bcm_mpls_egress_label_t_init(bcm_mpls_egress_label_t* label) {
  TRACE("");
  *label = {};
}
int bcm_mpls_tunnel_initiator_set(int, int intf, int num_labels, bcm_mpls_egress_label_t* label_array) {
  [[maybe_unused]] const bcm_mpls_egress_label_t& first = label_array[0];
  [[maybe_unused]] const bcm_mpls_egress_label_t& second = label_array[1];
  return TRACED(0, intf, num_labels, first.flags, first.label, first.qos_map_id, first.ttl, second.flags, second.label,
                second.qos_map_id, second.ttl);
}
int bcm_mpls_tunnel_initiator_clear(int, int intf) { return TRACED(0, intf); }

int limid_to_type(limid_t limid, unsigned char*) { return TRACED(0, limid.word); }
int limid_to_ifindex(limid_t limid, unsigned int*) { return TRACED(0, limid.word); }
int limid_to_intfname(limid_t limid, char*, size_t) { return TRACED(0, limid.word); }
int limid_is_from_type(limid_t limid, limid_type_t type) { return TRACED(0, limid.word, type); }
int limid_is_from_type_ethernet(limid_t limid) { return TRACED(1, limid.word); }
unsigned int limid_to_l3_vlan_vlanid(limid_t limid) { return TRACED(limid.word, limid.word); }

int fm_init(void) { return TRACED(0); }
fm_slot_t fm_local_slot(void) { return TRACED(0); }
static int fm_set_proto_ctrl(int, unsigned short vlan_id) { return TRACED(0, vlan_id); }
fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(fm_slot_t) {
  return TRACED(fm_set_proto_ctrl);
}
fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(fm_slot_t) {
  return TRACED(fm_set_proto_ctrl);
}
}

bool LimIdLess::operator()(const limid_t& left, const limid_t& right) const { return left.word < right.word; }

HalBcmCommon* HalBcmCommon::GetInstance() {
  static HalBcmCommon common;
  return &common;
}
int HalBcmCommon::GetMplsExpMapId() { return TRACED(7); }

HwObject::HwObject() : vlan_id_(100) {}
HwObject::~HwObject() = default;
std::string HwObject::ToString(bool) const { return TRACED(std::string()); }
unsigned int HwObject::vlan_id() const { return TRACED(vlan_id_); }

TunnelObject::TunnelObject() : type_(kTunnelTypeNone), ttl_(0), mpls_capability_(HAL_MPLS_CAPABILITY_NONE) {}
TunnelObject::EnumTunnelType TunnelObject::type() const { return TRACED(type_); }
void TunnelObject::set_type(EnumTunnelType type) {
  TRACE(type);
  type_ = type;
}
void TunnelObject::set_ttl(unsigned int ttl) {
  TRACE(ttl);
  ttl_ = ttl;
}
void TunnelObject::set_mpls_capability(en_HalMplsCapabilities capability) {
  TRACE(capability);
  mpls_capability_ = capability;
}
std::string TunnelObject::TunnelTypeToString(EnumTunnelType type) { return TRACED(std::string(), type); }

IntfObject::IntfObject() : id_(kIntf), vrf_(1), macsa_(), mtu_(1500), l3_flags_(0) {}
std::string IntfObject::ToString(bool deep) const { return TRACED(std::string(), deep); }
int IntfObject::id() const { return TRACED(id_); }
unsigned int IntfObject::vrf() const { return TRACED(vrf_); }
MacAddress IntfObject::macsa() const { return TRACED(macsa_); }
unsigned int IntfObject::mtu() const { return TRACED(mtu_); }
unsigned int IntfObject::l3_flags() const { return TRACED(l3_flags_); }
TunnelObject& IntfObject::tunnel() {
  TRACE("");
  return tunnel_;
}

int IntfManager::CreateIntf(unsigned int, int vrf, unsigned int vlan_id, unsigned char*, unsigned int mtu,
                            unsigned int flags) {
  return TRACED(kIntf, vrf, vlan_id, mtu, flags);
}
int IntfManager::UpdateIntf(int intf, unsigned int, int vrf, unsigned int vlan_id, unsigned char*, unsigned int mtu,
                            unsigned int flags) {
  return TRACED(kIntf, intf, vrf, vlan_id, mtu, flags);
}
int IntfManager::DeleteIntf(int, int intf) { return TRACED(0, intf); }
bool IntfManager::GetIntfObject([[maybe_unused]] int intf, IntfObject** object) {
  TRACE(intf);
  *object = &Intf();
  return true;
}

int EgressManager::CreateEgress(int intf, unsigned char*, unsigned short vlan_id, int, int port, unsigned int label,
                                bool to_cpu, bool drop, ExpLabelControl control) {
  return TRACED(kEgress, intf, vlan_id, port, label, to_cpu, drop, control);
}
int EgressManager::UpdateEgress(int egress, int intf, unsigned char*, unsigned short vlan_id, int, int port,
                                unsigned int label, bool to_cpu, bool drop, ExpLabelControl control) {
  return TRACED(0, egress, intf, vlan_id, port, label, to_cpu, drop, control);
}
int EgressManager::DeleteEgress(int egress) { return TRACED(0, egress); }

int IngressManager::CreateIngress(int, unsigned int vrf, unsigned int) { return TRACED(0, vrf); }
int IngressManager::DeleteIngress(int, unsigned int vrf) { return TRACED(0, vrf); }
int IngressManager::AssociateVlanToVrf(int vlan_id, unsigned int vrf) { return TRACED(0, vlan_id, vrf); }
int IngressManager::DissociateVlanfromVrf(int vlan_id, unsigned int vrf) { return TRACED(0, vlan_id, vrf); }

int MyStationManager::InsertMyStationVlanEntry(unsigned int vlan_id, unsigned int mask, const unsigned char*,
                                               unsigned int flags) {
  return TRACED(0, vlan_id, mask, flags);
}
int MyStationManager::UpdateMyStationVlanEntry(unsigned int vlan_id, unsigned int mask, const unsigned char*,
                                               unsigned int flags) {
  return TRACED(0, vlan_id, mask, flags);
}
int MyStationManager::RemoveMyStationVlanEntry(unsigned int vlan_id) { return TRACED(0, vlan_id); }

HwEncapsulationResourceManager::~HwEncapsulationResourceManager() = default;
std::string HwEncapsulationResourceManager::ToString(bool) const { return TRACED(std::string()); }
HwEncapsulationResourceManager* HwEncapsulationResourceManager::GetInstance() {
  static HwEncapsulationResourceManager manager;
  return &manager;
}
// The managers carry no data, so any address serves.
IntfManager* HwEncapsulationResourceManager::intf_mng() {
  static IntfManager manager;
  return TRACED(&manager);
}
EgressManager* HwEncapsulationResourceManager::egress_mng() {
  static EgressManager manager;
  return TRACED(&manager);
}
IngressManager* HwEncapsulationResourceManager::ingress_mng() {
  static IngressManager manager;
  return TRACED(&manager);
}
MyStationManager* HwEncapsulationResourceManager::my_station_mng() {
  static MyStationManager manager;
  return TRACED(&manager);
}

namespace {

/// Reads every argument and drops it. Knows the conversions that the module uses.
class DiscardingLog : public HalCallbacksItf {
 public:
  void log([[maybe_unused]] int level, const char* format, ...) override {
    TRACE(level, format);
    va_list arguments;
    va_start(arguments, format);
    // Character by character: what the C library's search costs depends on where the linker puts the text.
    for (const char* at = format; *at != '\0'; ++at) {
      if (*at != '%') continue;
      if (at[1] == 's') {
        text_ = va_arg(arguments, const char*);
        TRACE(text_);
      } else {
        number_ = va_arg(arguments, int);
        TRACE(number_);
      }
    }
    va_end(arguments);
  }

 private:
  const char* volatile text_ = nullptr;
  volatile int number_ = 0;
};

}  // namespace

HalCallbacksItf::~HalCallbacksItf() = default;
HalCallbacksItf* HalCallbacksItf::getInstance() {
  static DiscardingLog log;
  return &log;
}
