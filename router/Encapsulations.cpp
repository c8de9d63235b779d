#include "router/Encapsulations.h"

#include <algorithm>
#include <exception>
#include <tuple>
#include <utility>

namespace router {
namespace {

constexpr std::size_t kMostLabels = 2;  // that the chip puts on a packet
constexpr unsigned kNoVlan = 0;         // the VLAN encapsulation of what leaves through none

bool IsTunnel(const Way& way) { return way.kind == Way::Kind::kPush || way.kind == Way::Kind::kSwap; }

/// Labels of these values are none to the chip, but for the one that takes an incoming label's place.
bool IsNull(unsigned label) { return label == kExplicitNull || label == kImplicitNull; }

bool operator==(const InterfaceValues& one, const InterfaceValues& other) {
  return one.port.word == other.port.word && one.vlan.word == other.vlan.word && one.vrf == other.vrf &&
         one.mtu == other.mtu && one.mac == other.mac;
}

}  // namespace

bool operator<(const Neighbour& one, const Neighbour& other) {
  return std::tie(one.ifindex, one.address.version, one.address.bytes) <
         std::tie(other.ifindex, other.address.version, other.address.bytes);
}

/// An exception is a refusal: what the module throws is for this request alone.
template <typename Request>
int Encapsulations::Ask(const Request& request) try {
  ++requests_;
  return request();
} catch (const std::exception&) {
  return -1;
}

int Encapsulations::SetInterface(unsigned ifindex, const InterfaceValues& values) {
  const auto known = interfaces_.find(ifindex);
  if (known != interfaces_.end() && known->second.values == values) return 0;
  const bool is_new = known == interfaces_.end();
  const unsigned id = is_new ? next_id_++ : known->second.id;
  const auto write = is_new ? &HalL3MplsEncapsulationInterface::InstallVlanOutgoingEncapsulation
                            : &HalL3MplsEncapsulationInterface::ReplaceVlanOutgoingEncapsulation;
  Mac mac = values.mac;
  const int result = Ask([&] { return (module_.*write)(id, values.vlan, values.vrf, values.mtu, mac.data(), {}); });
  if (result < 0) return result;
  interfaces_[ifindex] = {values, id};
  may_help_ = true;
  for (auto& [way, destination] : destinations_) {
    if (way.ifindex == ifindex && destination.users > 0) Program(destination);
  }
  return result;
}

void Encapsulations::RemoveInterface(unsigned ifindex) {
  const auto known = interfaces_.find(ifindex);
  leaving_vlans_.push_back(known->second.id);
  interfaces_.erase(known);
  for (auto& [way, destination] : destinations_) {
    if (way.ifindex == ifindex) Become(destination, Destination::State::kAbsent, WhyNot(way));
  }
}

bool Encapsulations::IsLeaving(unsigned vlan_destination) const {
  return std::find(leaving_vlans_.begin(), leaving_vlans_.end(), vlan_destination) != leaving_vlans_.end();
}

void Encapsulations::SetNeighbour(const Neighbour& neighbour, const Mac& mac) {
  const auto [known, is_new] = neighbours_.emplace(neighbour, mac);
  if (!is_new && known->second == mac) return;
  known->second = mac;
  const auto behind = behind_.find(neighbour);
  if (behind == behind_.end()) return;
  for (Destination* const destination : behind->second) {
    if (destination->users > 0) Program(*destination);
  }
}

void Encapsulations::RemoveNeighbour(const Neighbour& neighbour) {
  if (neighbours_.erase(neighbour) == 0) return;
  const auto behind = behind_.find(neighbour);
  if (behind == behind_.end()) return;
  for (Destination* const destination : behind->second) {
    if (destination->users > 0) Program(*destination);
  }
}

Destination& Encapsulations::Acquire(const Way& way) {
  const auto [place, is_new] = destinations_.try_emplace(way, Destination{way});
  Destination& destination = place->second;
  if (is_new && way.gateway) behind_[{way.ifindex, *way.gateway}].push_back(&destination);
  // Who gets it sees what it is, and is not told.
  if (destination.users == 0 && destination.state == Destination::State::kAbsent) Program(destination);
  ++destination.users;
  return destination;
}

void Encapsulations::Release(Destination& destination) {
  if (--destination.users == 0) Leave(destination);
}

void Encapsulations::Leave(Destination& destination) {
  if (destination.leaving) return;
  destination.leaving = true;
  leaving_.push_back(&destination);
}

/// Why the card cannot do it, whatever it holds; empty when it can.
std::string Encapsulations::WhyNot(const Way& way) const {
  if (way.kind == Way::Kind::kUnknown) return "the chip has no such way";
  if (way.kind == Way::Kind::kDrop || way.kind == Way::Kind::kProcessor) return "";
  if (interfaces_.count(way.ifindex) == 0) {
    return "no statement says what interface " + std::to_string(way.ifindex) + " is on the card";
  }
  if (!IsTunnel(way)) return "";
  if (!way.gateway) return "a tunnel needs the address of its next hop";
  if (way.labels.size() > kMostLabels) {
    return std::to_string(way.labels.size()) + " labels; the chip puts on " + std::to_string(kMostLabels);
  }
  const bool swaps_to_explicit_null = way.kind == Way::Kind::kSwap && way.labels.back() == kExplicitNull;
  const auto end = way.labels.end() - (swaps_to_explicit_null ? 1 : 0);
  return std::any_of(way.labels.begin(), end, IsNull) ? "the chip does not push a null label" : "";
}

void Encapsulations::Program(Destination& destination) {
  using State = Destination::State;
  std::string why_not = WhyNot(destination.way);
  if (!why_not.empty()) return Become(destination, State::kAbsent, std::move(why_not));
  const Way& way = destination.way;
  const auto neighbour = way.gateway ? neighbours_.find({way.ifindex, *way.gateway}) : neighbours_.end();
  const Mac* const mac = neighbour == neighbours_.end() ? nullptr : &neighbour->second;
  if (!destination.installed) destination.id = next_id_++;
  const int result = Write(destination, mac);
  if (result < 0) return Refused(destination, destination.installed ? "replace" : "install", result);
  destination.installed = true;
  Become(destination, way.gateway && mac == nullptr ? State::kWaiting : State::kReady, "");
}

void Encapsulations::Refused(Destination& destination, const char* what, int result) {
  const std::string why = why_ ? why_() : "";
  Become(destination, Destination::State::kAbsent,
         std::string("the card refused: ") + what + (IsTunnel(destination.way) ? "-mpls " : "-host ") +
             std::to_string(destination.id) + " returned " + std::to_string(result) + (why.empty() ? "" : ": " + why));
  destination.refused = true;
  ++refused_;
}

void Encapsulations::Become(Destination& destination, Destination::State state, std::string reason) {
  using State = Destination::State;
  if (destination.refused) --refused_;
  destination.refused = false;
  destination.reason = std::move(reason);
  const bool moves = (std::exchange(destination.state, state) == State::kAbsent) != (state == State::kAbsent);
  if (state == State::kAbsent && destination.installed) Leave(destination);
  if (moves && destination.users > 0) changed_(destination);
}

int Encapsulations::Write(const Destination& destination, const Mac* mac) {
  const Way& way = destination.way;
  if (way.kind == Way::Kind::kDrop) return WriteHost(destination, HAL_ACTION_DROP, {});
  if (way.kind == Way::Kind::kProcessor) return WriteHost(destination, HAL_ACTION_TO_CPU, {});
  if (mac != nullptr) {
    return IsTunnel(way) ? WriteTunnel(destination, HAL_ACTION_NONE, *mac)
                         : WriteHost(destination, HAL_ACTION_NONE, *mac);
  }
  // The CPU finds out who has the address; a tunnel cannot end there.
  return IsTunnel(way) ? WriteTunnel(destination, HAL_ACTION_DROP, {}) : WriteHost(destination, HAL_ACTION_TO_CPU, {});
}

int Encapsulations::WriteHost(const Destination& destination, ActionFlags action, Mac mac) {
  const auto write = destination.installed ? &HalL3MplsEncapsulationInterface::ReplaceHostOutgoingEncapsulation
                                           : &HalL3MplsEncapsulationInterface::InstallHostOutgoingEncapsulation;
  const auto interface = interfaces_.find(destination.way.ifindex);
  const bool beneath = interface != interfaces_.end();
  std::vector<ActionFlags> actions;
  if (action != HAL_ACTION_NONE) actions.push_back(action);
  return Ask([&] {
    return (module_.*write)(destination.id, beneath ? interface->second.id : kNoVlan,
                            beneath ? interface->second.values.port : cpu_, actions, mac.data());
  });
}

int Encapsulations::WriteTunnel(const Destination& destination, ActionFlags action, Mac mac) {
  const auto write = destination.installed
                         ? &HalL3MplsEncapsulationInterface::ReplaceMplsUnprotectedOutgoingEncapsulation
                         : &HalL3MplsEncapsulationInterface::InstallMplsUnprotectedOutgoingEncapsulation;
  const Way& way = destination.way;
  const Interface& interface = interfaces_.at(way.ifindex);
  const auto capability = way.kind == Way::Kind::kPush ? HAL_MPLS_CAPABILITY_PUSH : HAL_MPLS_CAPABILITY_SWAP;
  return Ask([&] {
    // The module takes the innermost label first.
    return (module_.*write)(destination.id, interface.id, interface.values.port, mac.data(),
                            {way.labels.rbegin(), way.labels.rend()}, {capability}, action);
  });
}

int Encapsulations::Destroy(const Destination& destination) {
  const auto destroy = IsTunnel(destination.way)
                           ? &HalL3MplsEncapsulationInterface::DestroyMplsUnprotectedOutgoingEncapsulation
                           : &HalL3MplsEncapsulationInterface::DestroyHostOutgoingEncapsulation;
  return Ask([&] { return (module_.*destroy)(destination.id); });
}

void Encapsulations::Retry() {
  if (!std::exchange(may_help_, false) || refused_ == 0) return;
  for (auto& [way, destination] : destinations_) {
    if (destination.refused && destination.users > 0) Program(destination);
  }
}

void Encapsulations::Clear() {
  using State = Destination::State;
  Destinations stay;
  for (Destination* const destination : std::exchange(leaving_, {})) {
    destination->leaving = false;
    if (destination->users > 0 && destination->state != State::kAbsent) continue;
    if (destination->installed) {
      if (Destroy(*destination) < 0) {
        stay.push_back(destination);
        continue;
      }
      destination->installed = false;
      may_help_ = true;
    }
    if (destination->users > 0) continue;
    if (destination->refused) --refused_;
    const Way& way = destination->way;
    if (way.gateway) {
      const auto behind = behind_.find({way.ifindex, *way.gateway});
      Destinations& those = behind->second;
      those.erase(std::find(those.begin(), those.end(), destination));
      if (those.empty()) behind_.erase(behind);
    }
    destinations_.erase(Way(way));
  }
  for (Destination* const destination : stay) Leave(*destination);  // it is tried again when it is cleared again
  std::vector<unsigned> stay_vlans;
  for (const unsigned id : std::exchange(leaving_vlans_, {})) {
    if (Ask([&] { return module_.DestroyVlanOutgoingEncapsulation(id); }) < 0) stay_vlans.push_back(id);
  }
  leaving_vlans_ = std::move(stay_vlans);
}

}  // namespace router
