#include "diagnosis/Ledger.h"

#include <cstdlib>
#include <functional>
#include <string_view>

namespace diagnosis {
namespace {

/// A platform function that writes a row, and where a call of it has the row's key.
struct Writer {
  std::string_view function;
  std::string_view table;
  std::string_view key;  ///< an argument; empty: the result
  enum class What { kWrites, kTakesAway, kLooks } what;
};

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

const Writer* FindWriter(std::string_view function) {
  for (const Writer& writer : kWriters) {
    if (writer.function == function) return &writer;
  }
  return nullptr;
}

/// The key that the call has, and a hash of everything else that it is given.
std::pair<const calls::Value*, std::size_t> KeyAndValues(const calls::Call& call, const Writer& writer) {
  const calls::Value* key = writer.key.empty() ? &call.result : nullptr;
  std::string values;
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    const calls::Argument& argument = call.function->arguments[i];
    if (argument.name == writer.key) {
      key = &call.arguments[i];
    } else {
      values += calls::Text(argument.kind, call.arguments[i]) + ' ';
    }
  }
  return {key, std::hash<std::string>()(values)};
}

void AddRefused(const calls::Call& call, std::string& text) {
  if (!text.empty()) text += ", ";
  text += std::string(call.function->name) + " = " + calls::Text(call.function->result_kind(), call.result);
}

bool Failed(const scenario::RequestResult& result) {
  return result.kind == scenario::RequestResult::Kind::kThrew || result.number < 0;
}

/// "Installing outgoing encapsulation for mpls destination id(30)": the words of the log that begin an operation.
struct Begun {
  bool install = false;
  bool replace = false;
  bool destroy = false;
  Ledger::Maker what = Ledger::Maker::kUnknown;
  int destination = 0;
};

bool Take(std::string_view& text, std::string_view prefix) {
  if (text.substr(0, prefix.size()) != prefix) return false;
  text.remove_prefix(prefix.size());
  return true;
}

Begun ReadBegun(std::string_view text) {
  Begun begun;
  begun.install = Take(text, "Installing ");
  begun.replace = Take(text, "Updating ");
  begun.destroy = Take(text, "Destroying ");
  if (!Take(text, "outgoing encapsulation for ")) return {};
  if (Take(text, "VLAN ") || Take(text, "vlan ")) begun.what = Ledger::Maker::kVlan;
  if (Take(text, "host ")) begun.what = Ledger::Maker::kHost;
  if (Take(text, "mpls ")) begun.what = Ledger::Maker::kMpls;
  if (begun.what == Ledger::Maker::kUnknown || !Take(text, "destination id(")) return {};
  begun.destination = static_cast<int>(std::strtoll(std::string(text).c_str(), nullptr, 10));
  return begun;
}

}  // namespace

const softcard::TableDescription* TableOf(std::string_view name) {
  static const auto tables = softcard::Card::TableDescriptions();
  for (const softcard::TableDescription* table : tables) {
    if (table->name == name) return table;
  }
  return nullptr;
}

void Ledger::Took(const scenario::Step& step) {
  if (ended_) *this = {};
  const auto* const trace = std::get_if<scenario::Trace>(&step.content);
  if (trace == nullptr || step.kind == scenario::Kind::kPacket) return;
  requests_.push_back({step.line, step.Text(), Failed(trace->result), ""});
  touched_.clear();
  for (const scenario::TraceLine& line : trace->lines) {
    const auto* const event = std::get_if<calls::Event>(&line.what);
    if (event == nullptr) continue;
    if (const auto* call = std::get_if<calls::Call>(event)) {
      if (calls::IsRefused(*event)) AddRefused(*call, requests_.back().refused);
      Follow(*call);
    } else {
      Follow(std::get<calls::LogLine>(*event), requests_.back().failed);
    }
  }
  if (requests_.back().failed) return;
  for (const Key& key : touched_) {
    Touch& touch = touches_.at(key);
    touch.settled = touch.written;
  }
}

void Ledger::Ended(const std::string&, const scenario::Tally&) { ended_ = true; }

void Ledger::Follow(const calls::Call& call) {
  const Writer* const writer = FindWriter(call.function->name);
  if (writer == nullptr) return;
  const auto [value, hash] = KeyAndValues(call, *writer);
  const auto* const number = value == nullptr ? nullptr : std::get_if<std::int64_t>(value);
  const bool refused = calls::IsRefused(call);
  const bool without_id = writer->key.empty() && refused;
  if (number == nullptr || without_id || (writer->what == Writer::What::kLooks && !refused)) return;
  const Key key{TableOf(writer->table), *number};
  Touch& touch = touches_[key];
  touch.request = requests_.size() - 1;
  touched_.push_back(key);
  if (refused) return;
  touch.written = writer->what == Writer::What::kWrites ? hash : 0;
  if (writer->table == "intfs" && writer->what == Writer::What::kWrites) FollowVlan(call, static_cast<int>(*number));
}

void Ledger::FollowVlan(const calls::Call& call, int intf) {
  const std::string_view name = "vlan";
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    if (call.function->arguments[i].name != name) continue;
    const std::int64_t vlan_id = std::get<std::int64_t>(call.arguments[i]);
    const auto [known, is_new] = vlans_.emplace(intf, vlan_id);
    if (is_new || known->second == vlan_id) return;
    for (const char* table : {"stations", "associations", "protocol"}) {
      touches_[{TableOf(table), known->second}].request = requests_.size() - 1;
    }
    known->second = vlan_id;
  }
}

void Ledger::Follow(const calls::LogLine& line, bool failed) {
  const Begun begun = ReadBegun(line.text);
  if (begun.what == Maker::kUnknown) return;
  const Key key{TableOf("destinations"), begun.destination};
  touches_[key].request = requests_.size() - 1;
  if (begun.destroy && !failed) makers_.erase(begun.destination);
  // A second install is refused its record, and the first maker stays.
  if (begun.install && !failed) makers_.emplace(begun.destination, begun.what);
}

Ledger::Maker Ledger::MakerOf(int destination) const {
  const auto found = makers_.find(destination);
  return found == makers_.end() ? Maker::kUnknown : found->second;
}

const Ledger::Request* Ledger::LastTouching(const softcard::TableDescription* table, std::int64_t key) const {
  const auto found = touches_.find({table, key});
  return found == touches_.end() ? nullptr : &requests_[found->second.request];
}

bool Ledger::IsHalfWritten(const softcard::TableDescription* table, std::int64_t key) const {
  const auto found = touches_.find({table, key});
  return found != touches_.end() && found->second.written != found->second.settled;
}

}  // namespace diagnosis
