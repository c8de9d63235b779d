#ifndef CALLS_FUNCTIONS_H
#define CALLS_FUNCTIONS_H

#include <stdexcept>
#include <string_view>

#include "calls/Value.h"

/// The platform's functions: one description of each, that everything about its calls is made from.
namespace calls {

/// What a function does to the card.
enum class Purpose {
  kCall,    ///< programs or asks it
  kAccess,  ///< looks at what is there already: singletons, managers, members of interface and tunnel objects
};

/// What a function gives back.
enum class Result {
  kNothing,
  kObject,     ///< a pointer or a reference, which has no text
  kStatus,     ///< negative is failure
  kId,         ///< a new or kept id, or a negative status
  kNumber,     ///< any value; a negative one reads as a status
  kUnsigned,   ///< any value
  kPredicate,  ///< an int; nonzero: yes
  kFound,      ///< a bool; false: there is none
  kMac,
  kTunnelType,
  kText,
};

struct Argument {
  const char* name;
  Kind kind;
};

struct Function {
  static constexpr int kMaxArguments = 10;

  const char* name;  ///< "IntfManager::CreateIntf"
  Purpose purpose;
  Result result;
  Argument arguments[kMaxArguments];  ///< up to the first without a name
  Argument output{};                  ///< what a call that succeeds writes through a pointer; without a name: nothing

  constexpr int argument_count() const {
    int count = 0;
    while (count < kMaxArguments && arguments[count].name) ++count;
    return count;
  }
  /// How the result reads.
  Kind result_kind() const;
  /// Whether a call can be told to give another result: a status, an id, a number or a truth value.
  bool can_be_refused() const;
};

inline constexpr Function kFunctions[] = {
    {"fm_init", Purpose::kCall, Result::kStatus, {}},
    {"fm_local_slot", Purpose::kCall, Result::kNumber, {}},
    {"fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable",
     Purpose::kCall,
     Result::kObject,
     {{"slot", Kind::kNumber}}},
    {"fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable",
     Purpose::kCall,
     Result::kObject,
     {{"slot", Kind::kNumber}}},
    // What the two above hand out.
    {"vlan_proto_ctrl_enable", Purpose::kCall, Result::kStatus, {{"unit", Kind::kNumber}, {"vlan", Kind::kNumber}}},
    {"vlan_proto_ctrl_disable", Purpose::kCall, Result::kStatus, {{"unit", Kind::kNumber}, {"vlan", Kind::kNumber}}},

    {"bcm_switch_control_set",
     Purpose::kCall,
     Result::kStatus,
     {{"unit", Kind::kNumber}, {"type", Kind::kSwitchControl}, {"arg", Kind::kNumber}}},
    {"bcm_mpls_egress_label_t_init", Purpose::kCall, Result::kNothing, {}, {"label", Kind::kLabels}},
    {"bcm_mpls_tunnel_initiator_set",
     Purpose::kCall,
     Result::kStatus,
     {{"unit", Kind::kNumber}, {"intf", Kind::kNumber}, {"num_labels", Kind::kNumber}, {"labels", Kind::kLabels}}},
    {"bcm_mpls_tunnel_initiator_clear",
     Purpose::kCall,
     Result::kStatus,
     {{"unit", Kind::kNumber}, {"intf", Kind::kNumber}}},

    {"limid_to_type", Purpose::kCall, Result::kStatus, {{"limid", Kind::kLimId}}, {"type", Kind::kNumber}},
    {"limid_to_ifindex", Purpose::kCall, Result::kStatus, {{"limid", Kind::kLimId}}, {"ifindex", Kind::kNumber}},
    {"limid_to_intfname",
     Purpose::kCall,
     Result::kStatus,
     {{"limid", Kind::kLimId}, {"size", Kind::kNumber}},
     {"name", Kind::kText}},
    {"limid_is_from_type", Purpose::kCall, Result::kPredicate, {{"limid", Kind::kLimId}, {"type", Kind::kLimIdType}}},
    {"limid_is_from_type_ethernet", Purpose::kCall, Result::kPredicate, {{"limid", Kind::kLimId}}},
    {"limid_to_l3_vlan_vlanid", Purpose::kCall, Result::kUnsigned, {{"limid", Kind::kLimId}}},

    {"HalBcmCommon::GetMplsExpMapId", Purpose::kCall, Result::kNumber, {}},
    {"IngressManager::CreateIngress",
     Purpose::kCall,
     Result::kStatus,
     {{"unit", Kind::kNumber}, {"vrf", Kind::kNumber}, {"flags", Kind::kHex}}},
    {"IngressManager::DeleteIngress",
     Purpose::kCall,
     Result::kStatus,
     {{"unit", Kind::kNumber}, {"vrf", Kind::kNumber}}},
    {"IngressManager::AssociateVlanToVrf",
     Purpose::kCall,
     Result::kStatus,
     {{"vlan", Kind::kNumber}, {"vrf", Kind::kNumber}}},
    {"IngressManager::DissociateVlanfromVrf",
     Purpose::kCall,
     Result::kStatus,
     {{"vlan", Kind::kNumber}, {"vrf", Kind::kNumber}}},
    {"MyStationManager::InsertMyStationVlanEntry",
     Purpose::kCall,
     Result::kStatus,
     {{"vlan", Kind::kNumber}, {"mask", Kind::kHex}, {"mac", Kind::kMac}, {"flags", Kind::kHex}}},
    {"MyStationManager::UpdateMyStationVlanEntry",
     Purpose::kCall,
     Result::kStatus,
     {{"vlan", Kind::kNumber}, {"mask", Kind::kHex}, {"mac", Kind::kMac}, {"flags", Kind::kHex}}},
    {"MyStationManager::RemoveMyStationVlanEntry", Purpose::kCall, Result::kStatus, {{"vlan", Kind::kNumber}}},
    {"IntfManager::CreateIntf",
     Purpose::kCall,
     Result::kId,
     {{"unit", Kind::kNumber},
      {"vrf", Kind::kNumber},
      {"vlan", Kind::kNumber},
      {"mac", Kind::kMac},
      {"mtu", Kind::kNumber},
      {"flags", Kind::kHex}}},
    {"IntfManager::UpdateIntf",
     Purpose::kCall,
     Result::kId,
     {{"intf", Kind::kNumber},
      {"unit", Kind::kNumber},
      {"vrf", Kind::kNumber},
      {"vlan", Kind::kNumber},
      {"mac", Kind::kMac},
      {"mtu", Kind::kNumber},
      {"flags", Kind::kHex}}},
    {"IntfManager::DeleteIntf", Purpose::kCall, Result::kStatus, {{"unit", Kind::kNumber}, {"intf", Kind::kNumber}}},
    {"IntfManager::GetIntfObject", Purpose::kCall, Result::kFound, {{"intf", Kind::kNumber}}},
    {"EgressManager::CreateEgress",
     Purpose::kCall,
     Result::kId,
     {{"intf", Kind::kNumber},
      {"mac", Kind::kMac},
      {"vlan", Kind::kNumber},
      {"unit", Kind::kNumber},
      {"port", Kind::kNumber},
      {"label", Kind::kLabel},
      {"to_cpu", Kind::kBool},
      {"drop", Kind::kBool},
      {"control", Kind::kNumber}}},
    {"EgressManager::UpdateEgress",
     Purpose::kCall,
     Result::kStatus,
     {{"egress", Kind::kNumber},
      {"intf", Kind::kNumber},
      {"mac", Kind::kMac},
      {"vlan", Kind::kNumber},
      {"unit", Kind::kNumber},
      {"port", Kind::kNumber},
      {"label", Kind::kLabel},
      {"to_cpu", Kind::kBool},
      {"drop", Kind::kBool},
      {"control", Kind::kNumber}}},
    {"EgressManager::DeleteEgress", Purpose::kCall, Result::kStatus, {{"egress", Kind::kNumber}}},
    {"TunnelObject::set_ttl", Purpose::kCall, Result::kNothing, {{"ttl", Kind::kNumber}}},
    {"TunnelObject::set_type", Purpose::kCall, Result::kNothing, {{"type", Kind::kTunnelType}}},
    {"TunnelObject::set_mpls_capability", Purpose::kCall, Result::kNothing, {{"capability", Kind::kNumber}}},

    {"HalCallbacksItf::getInstance", Purpose::kAccess, Result::kObject, {}},
    {"HalBcmCommon::GetInstance", Purpose::kAccess, Result::kObject, {}},
    {"HwEncapsulationResourceManager::GetInstance", Purpose::kAccess, Result::kObject, {}},
    {"HwEncapsulationResourceManager::ToString", Purpose::kAccess, Result::kText, {{"deep", Kind::kBool}}},
    {"HwEncapsulationResourceManager::intf_mng", Purpose::kAccess, Result::kObject, {}},
    {"HwEncapsulationResourceManager::egress_mng", Purpose::kAccess, Result::kObject, {}},
    {"HwEncapsulationResourceManager::ingress_mng", Purpose::kAccess, Result::kObject, {}},
    {"HwEncapsulationResourceManager::my_station_mng", Purpose::kAccess, Result::kObject, {}},
    {"HwObject::ToString", Purpose::kAccess, Result::kText, {{"deep", Kind::kBool}}},
    {"HwObject::vlan_id", Purpose::kAccess, Result::kUnsigned, {}},
    {"IntfObject::ToString", Purpose::kAccess, Result::kText, {{"deep", Kind::kBool}}},
    {"IntfObject::id", Purpose::kAccess, Result::kNumber, {}},
    {"IntfObject::vrf", Purpose::kAccess, Result::kUnsigned, {}},
    {"IntfObject::macsa", Purpose::kAccess, Result::kMac, {}},
    {"IntfObject::mtu", Purpose::kAccess, Result::kUnsigned, {}},
    {"IntfObject::l3_flags", Purpose::kAccess, Result::kUnsigned, {}},
    {"IntfObject::tunnel", Purpose::kAccess, Result::kObject, {}},
    {"TunnelObject::type", Purpose::kAccess, Result::kTunnelType, {}},
    {"TunnelObject::TunnelTypeToString", Purpose::kAccess, Result::kText, {{"type", Kind::kTunnelType}}},
};

/// The place in kFunctions of the function of this name, at compile time.
constexpr int Named(std::string_view name) {
  int index = 0;
  for (const Function& function : kFunctions) {
    if (name == function.name) return index;
    ++index;
  }
  throw std::logic_error("no platform function has this name");
}

/// Null for a name that no platform function has.
const Function* FindFunction(std::string_view name);

}  // namespace calls

#endif
