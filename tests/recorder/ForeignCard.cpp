// A card of another make, behind the same declarations: lim ids, chip ports, ids and texts of its own. Its chip forgets
// to free the rows of tunnels that are cleared, and refuses a tunnel when all are used up.

#include <cstdarg>
#include <cstdio>
#include <map>

#include "bcm/error.h"
#include "bcm/mpls.h"
#include "bcm/switch.h"
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

constexpr int kUnit = 5;
constexpr int kTunnelRows = 12;

/// The kind is in the lowest byte of a lim id, the number above it.
enum LimKind : unsigned { kPort = 0xE1, kLag = 0x1A, kCpu = 0xC0, kVlan = 0x71 };
unsigned KindOf(limid_t limid) { return limid.word & 0xFF; }
unsigned NumberOf(limid_t limid) { return limid.word >> 8; }
limid_t Lim(LimKind kind, unsigned number) { return {number << 8 | kind}; }

std::map<int, IntfObject>& Intfs() {
  static std::map<int, IntfObject> intfs;
  return intfs;
}

int the_tunnel_rows = 0;

}  // namespace

extern "C" {

const char* const _shr_errmsg[] = {"Fine",        "Internal",   "Memory",   "Unit",    "Parameter", "Empty", "No room",
                                   "Unknown row", "Exists",     "Too late", "Busy",    "Failed",    "Off",   "Bad id",
                                   "No resource", "Bad config", "Not here", "No init", "Port",      "What?"};

int bcm_switch_control_set(int unit, bcm_switch_control_t, int) { return unit == kUnit ? 0 : BCM_E_UNIT; }

void bcm_mpls_egress_label_t_init(bcm_mpls_egress_label_t* label) { *label = {}; }
int bcm_mpls_tunnel_initiator_set(int, int, int, bcm_mpls_egress_label_t*) {
  return ++the_tunnel_rows > kTunnelRows ? BCM_E_FULL : BCM_E_NONE;
}
int bcm_mpls_tunnel_initiator_clear(int, int) { return 0; }

int limid_to_type(limid_t limid, unsigned char* type) {
  *type = static_cast<unsigned char>(KindOf(limid));
  return 0;
}
int limid_to_ifindex(limid_t limid, unsigned int* ifindex) {
  *ifindex = NumberOf(limid);
  return 0;
}
int limid_to_intfname(limid_t limid, char* name, size_t size) {
  std::snprintf(name, size, "port %u (of %02x)", NumberOf(limid), KindOf(limid));
  return 0;
}
int limid_is_from_type(limid_t limid, limid_type_t type) {
  return KindOf(limid) == (type == limid_type_cpuport ? kCpu : kLag) ? 7 : 0;
}
int limid_is_from_type_ethernet(limid_t limid) { return KindOf(limid) == kPort ? 7 : 0; }
unsigned int limid_to_l3_vlan_vlanid(limid_t limid) { return NumberOf(limid); }

int fm_init(void) { return 0; }
fm_slot_t fm_local_slot(void) { return 3; }
static int fm_set_protocol(int, unsigned short) { return 0; }
fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(fm_slot_t) { return fm_set_protocol; }
fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(fm_slot_t) { return fm_set_protocol; }
}

bool LimIdLess::operator()(const limid_t& left, const limid_t& right) const { return left.word < right.word; }

HalBcmCommon* HalBcmCommon::GetInstance() {
  static HalBcmCommon* const common = [] {
    auto* const made = new HalBcmCommon;
    made->unit = kUnit;
    made->port_table[Lim(kCpu, 0)] = 64;
    for (int port = 1; port <= 8; ++port) made->port_table[Lim(kPort, static_cast<unsigned>(port))] = 2100 + port;
    for (int lag = 1; lag <= 2; ++lag) made->lag_table[Lim(kLag, static_cast<unsigned>(lag))] = 70 + lag;
    return made;
  }();
  return common;
}
int HalBcmCommon::GetMplsExpMapId() { return 9; }

HwObject::HwObject() : vlan_id_(0) {}
HwObject::~HwObject() = default;
std::string HwObject::ToString(bool) const { return "object"; }
unsigned int HwObject::vlan_id() const { return vlan_id_; }

TunnelObject::TunnelObject() : type_(kTunnelTypeNone), ttl_(0), mpls_capability_(HAL_MPLS_CAPABILITY_NONE) {}
TunnelObject::EnumTunnelType TunnelObject::type() const { return type_; }
void TunnelObject::set_type(EnumTunnelType type) { type_ = type; }
void TunnelObject::set_ttl(unsigned int ttl) { ttl_ = ttl; }
void TunnelObject::set_mpls_capability(en_HalMplsCapabilities capability) { mpls_capability_ = capability; }
std::string TunnelObject::TunnelTypeToString(EnumTunnelType type) {
  return type == kTunnelTypeMpls ? "with labels" : "plain";
}

IntfObject::IntfObject() : id_(0), vrf_(0), macsa_(), mtu_(0), l3_flags_(0) {}
std::string IntfObject::ToString(bool) const { return "L3 interface #" + std::to_string(id_); }
int IntfObject::id() const { return id_; }
unsigned int IntfObject::vrf() const { return vrf_; }
MacAddress IntfObject::macsa() const { return macsa_; }
unsigned int IntfObject::mtu() const { return mtu_; }
unsigned int IntfObject::l3_flags() const { return l3_flags_; }
TunnelObject& IntfObject::tunnel() { return tunnel_; }

int IntfManager::CreateIntf(unsigned int unit, int vrf, unsigned int vlan_id, unsigned char* mac, unsigned int mtu,
                            unsigned int flags) {
  static int last = 400;
  last += 2;
  return UpdateIntf(last, unit, vrf, vlan_id, mac, mtu, flags);
}
int IntfManager::UpdateIntf(int intf, unsigned int, int vrf, unsigned int vlan_id, unsigned char* mac, unsigned int mtu,
                            unsigned int flags) {
  IntfObject& object = Intfs()[intf];
  object.id_ = intf;
  object.vrf_ = static_cast<unsigned>(vrf);
  static_cast<HwObject&>(object).vlan_id_ = vlan_id;
  for (std::size_t i = 0; i < object.macsa_.size(); ++i) object.macsa_[i] = mac[i];
  object.mtu_ = mtu;
  object.l3_flags_ = flags;
  return intf;
}
int IntfManager::DeleteIntf(int, int intf) { return Intfs().erase(intf) > 0 ? BCM_E_NONE : BCM_E_NOT_FOUND; }
bool IntfManager::GetIntfObject(int intf, IntfObject** object) {
  const auto found = Intfs().find(intf);
  if (found != Intfs().end()) *object = &found->second;
  return found != Intfs().end();
}

int EgressManager::CreateEgress(int, unsigned char*, unsigned short, int, int, unsigned int, bool, bool,
                                ExpLabelControl) {
  static int last = 7000;
  return ++last;
}
int EgressManager::UpdateEgress(int, int, unsigned char*, unsigned short, int, int, unsigned int, bool, bool,
                                ExpLabelControl) {
  return 0;
}
int EgressManager::DeleteEgress(int) { return 0; }

int IngressManager::CreateIngress(int, unsigned int, unsigned int) { return 0; }
int IngressManager::DeleteIngress(int, unsigned int) { return 0; }
int IngressManager::AssociateVlanToVrf(int, unsigned int) { return 0; }
int IngressManager::DissociateVlanfromVrf(int, unsigned int) { return 0; }

int MyStationManager::InsertMyStationVlanEntry(unsigned int, unsigned int, const unsigned char*, unsigned int) {
  return 0;
}
int MyStationManager::UpdateMyStationVlanEntry(unsigned int, unsigned int, const unsigned char*, unsigned int) {
  return 0;
}
int MyStationManager::RemoveMyStationVlanEntry(unsigned int) { return 0; }

HwEncapsulationResourceManager::~HwEncapsulationResourceManager() = default;
std::string HwEncapsulationResourceManager::ToString(bool) const { return "resources"; }
HwEncapsulationResourceManager* HwEncapsulationResourceManager::GetInstance() {
  static HwEncapsulationResourceManager manager;
  return &manager;
}
IntfManager* HwEncapsulationResourceManager::intf_mng() {
  static IntfManager manager;
  return &manager;
}
EgressManager* HwEncapsulationResourceManager::egress_mng() {
  static EgressManager manager;
  return &manager;
}
IngressManager* HwEncapsulationResourceManager::ingress_mng() {
  static IngressManager manager;
  return &manager;
}
MyStationManager* HwEncapsulationResourceManager::my_station_mng() {
  static MyStationManager manager;
  return &manager;
}

namespace {

class Log : public HalCallbacksItf {
 public:
  void log(int level, const char* format, ...) override {
    if (level > 3) return;
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
    std::fputc('\n', stderr);
  }
};

}  // namespace

HalCallbacksItf::~HalCallbacksItf() = default;
HalCallbacksItf* HalCallbacksItf::getInstance() {
  static Log log;
  return &log;
}
