#include "diagnosis/Touches.h"

#include <cstdlib>
#include <string>
#include <unordered_map>

namespace diagnosis {
namespace {

constexpr Writer kWriters[] = {
    {"vlan_proto_ctrl_enable", "protocol", "vlan", Writer::What::kWrites},
    {"vlan_proto_ctrl_disable", "protocol", "vlan", Writer::What::kTakesAway},
    {"bcm_switch_control_set", "switch", "type", Writer::What::kWrites},
    {"bcm_mpls_tunnel_initiator_set", "initiators", "intf", Writer::What::kWrites},
    {"bcm_mpls_tunnel_initiator_clear", "initiators", "intf", Writer::What::kTakesAway},
    {"IngressManager::CreateIngress", "vrfs", "vrf", Writer::What::kWrites},
    {"IngressManager::DeleteIngress", "vrfs", "vrf", Writer::What::kTakesAway},
    {"IngressManager::AssociateVlanToVrf", "associations", "vlan", Writer::What::kWrites},
    {"IngressManager::DissociateVlanfromVrf", "associations", "vlan", Writer::What::kTakesAway},
    {"MyStationManager::InsertMyStationVlanEntry", "stations", "vlan", Writer::What::kWrites},
    {"MyStationManager::UpdateMyStationVlanEntry", "stations", "vlan", Writer::What::kWrites},
    {"MyStationManager::RemoveMyStationVlanEntry", "stations", "vlan", Writer::What::kTakesAway},
    {"IntfManager::CreateIntf", "intfs", "", Writer::What::kWrites},
    {"IntfManager::UpdateIntf", "intfs", "intf", Writer::What::kWrites},
    {"IntfManager::DeleteIntf", "intfs", "intf", Writer::What::kTakesAway},
    {"IntfManager::GetIntfObject", "intfs", "intf", Writer::What::kLooks},
    {"EgressManager::CreateEgress", "egresses", "", Writer::What::kWrites},
    {"EgressManager::UpdateEgress", "egresses", "egress", Writer::What::kWrites},
    {"EgressManager::DeleteEgress", "egresses", "egress", Writer::What::kTakesAway},
};

bool TakeWords(std::string_view& text, std::string_view prefix) {
  if (text.substr(0, prefix.size()) != prefix) return false;
  text.remove_prefix(prefix.size());
  return true;
}

}  // namespace

const Writer* FindWriter(const calls::Function* function) {
  static const auto writers = [] {
    std::unordered_map<const calls::Function*, const Writer*> found;
    for (const Writer& writer : kWriters) found.emplace(calls::FindFunction(writer.function), &writer);
    return found;
  }();
  const auto found = writers.find(function);
  return found == writers.end() ? nullptr : found->second;
}

const calls::Value* KeyOf(const calls::Call& call, const Writer& writer) {
  if (writer.key.empty()) return &call.result;
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    if (call.function->arguments[i].name == writer.key) return &call.arguments[i];
  }
  return nullptr;
}

Begun ReadBegun(std::string_view text) {
  Begun begun;
  begun.install = TakeWords(text, "Installing ");
  begun.replace = TakeWords(text, "Updating ");
  begun.destroy = TakeWords(text, "Destroying ");
  if (!TakeWords(text, "outgoing encapsulation for ")) return {};
  if (TakeWords(text, "VLAN ") || TakeWords(text, "vlan ")) begun.what = Maker::kVlan;
  if (TakeWords(text, "host ")) begun.what = Maker::kHost;
  if (TakeWords(text, "mpls ")) begun.what = Maker::kMpls;
  if (begun.what == Maker::kUnknown || !TakeWords(text, "destination id(")) return {};
  begun.destination = static_cast<int>(std::strtoll(std::string(text).c_str(), nullptr, 10));
  return begun;
}

std::vector<Place> PlacesOf(const scenario::Trace& trace) {
  std::vector<Place> places;
  for (const scenario::TraceLine& line : trace.lines) {
    const auto* const event = std::get_if<calls::Event>(&line.what);
    if (event == nullptr) continue;
    if (const auto* log = std::get_if<calls::LogLine>(event)) {
      const Begun begun = ReadBegun(log->text);
      if (begun.what != Maker::kUnknown) places.push_back({"destinations", begun.destination});
      continue;
    }
    const auto& call = std::get<calls::Call>(*event);
    const Writer* const writer = FindWriter(call.function);
    const calls::Value* const key = writer == nullptr ? nullptr : KeyOf(call, *writer);
    const auto* const number = key == nullptr ? nullptr : std::get_if<std::int64_t>(key);
    if (number != nullptr) places.push_back({writer->table, *number});
  }
  return places;
}

}  // namespace diagnosis
