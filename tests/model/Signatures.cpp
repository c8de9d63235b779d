#include "tests/model/Signatures.h"

#include <stdexcept>

namespace model {

const std::vector<Signature> kSignatures = {
    {"SwitchControl", "bcm_switch_control_set", "unit=%d, type=%s, arg=%d", Result::kStatus},
    {"InitLabel", "bcm_mpls_egress_label_t_init", "", Result::kNothing},
    {"SetInitiator", "bcm_mpls_tunnel_initiator_set", "unit=%d, intf=%d, num_labels=%d, labels=%r", Result::kStatus},
    {"ClearInitiator", "bcm_mpls_tunnel_initiator_clear", "unit=%d, intf=%d", Result::kStatus},
    {"ExpMapId", "HalBcmCommon::GetMplsExpMapId", "", Result::kNumber},
    {"LocalSlot", "fm_local_slot", "", Result::kNumber},
    {"ProtocolEnabler", "fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable", "slot=%d", Result::kNothing},
    {"ProtocolDisabler", "fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable", "slot=%d", Result::kNothing},
    {"ProtocolEnable", "vlan_proto_ctrl_enable", "unit=%d, vlan=%h", Result::kStatus},
    {"ProtocolDisable", "vlan_proto_ctrl_disable", "unit=%d, vlan=%h", Result::kStatus},
    {"LimidToVlan", "limid_to_l3_vlan_vlanid", "limid=%l", Result::kNumber},
    {"LimidToType", "limid_to_type", "limid=%l", Result::kStatus},
    {"LimidToIndex", "limid_to_ifindex", "limid=%l", Result::kStatus},
    {"LimidToName", "limid_to_intfname", "limid=%l, size=64", Result::kStatus},
    {"LimidIsFromType", "limid_is_from_type", "limid=%l, type=%t", Result::kPredicate},
    {"LimidIsEthernet", "limid_is_from_type_ethernet", "limid=%l", Result::kPredicate},
    {"CreateIngress", "IngressManager::CreateIngress", "unit=%d, vrf=%u, flags=%x", Result::kStatus},
    {"DeleteIngress", "IngressManager::DeleteIngress", "unit=%d, vrf=%u", Result::kStatus},
    {"Associate", "IngressManager::AssociateVlanToVrf", "vlan=%d, vrf=%u", Result::kStatus},
    {"Dissociate", "IngressManager::DissociateVlanfromVrf", "vlan=%d, vrf=%u", Result::kStatus},
    {"InsertStation", "MyStationManager::InsertMyStationVlanEntry", "vlan=%u, mask=%x, mac=%m, flags=%x",
     Result::kStatus},
    {"UpdateStation", "MyStationManager::UpdateMyStationVlanEntry", "vlan=%u, mask=%x, mac=%m, flags=%x",
     Result::kStatus},
    {"RemoveStation", "MyStationManager::RemoveMyStationVlanEntry", "vlan=%u", Result::kStatus},
    {"CreateIntf", "IntfManager::CreateIntf", "unit=%u, vrf=%d, vlan=%u, mac=%m, mtu=%u, flags=%x", Result::kId},
    {"UpdateIntf", "IntfManager::UpdateIntf", "intf=%d, unit=%u, vrf=%d, vlan=%u, mac=%m, mtu=%u, flags=%x",
     Result::kId},
    {"DeleteIntf", "IntfManager::DeleteIntf", "unit=%d, intf=%d", Result::kStatus},
    {"GetIntfObject", "IntfManager::GetIntfObject", "intf=%d", Result::kFound},
    {"CreateEgress", "EgressManager::CreateEgress",
     "intf=%d, mac=%m, vlan=%h, unit=%d, port=%d, label=%n, to_cpu=%b, drop=%b, control=%d", Result::kId},
    {"UpdateEgress", "EgressManager::UpdateEgress",
     "egress=%d, intf=%d, mac=%m, vlan=%h, unit=%d, port=%d, label=%n, to_cpu=%b, drop=%b, control=%d",
     Result::kStatus},
    {"DeleteEgress", "EgressManager::DeleteEgress", "egress=%d", Result::kStatus},
    {"SetTtl", "TunnelObject::set_ttl", "ttl=%u", Result::kNothing},
    {"SetType", "TunnelObject::set_type", "type=mpls", Result::kNothing},
    {"SetCapability", "TunnelObject::set_mpls_capability", "capability=%d", Result::kNothing},
};

int SignatureIndex(std::string_view name) {
  for (size_t i = 0; i < kSignatures.size(); ++i) {
    if (kSignatures[i].name == name) return static_cast<int>(i);
  }
  return -1;
}

const Signature& SignatureOf(std::string_view function) {
  for (const auto& signature : kSignatures) {
    if (signature.function == function) return signature;
  }
  throw std::out_of_range("no signature of " + std::string(function));
}

}  // namespace model
