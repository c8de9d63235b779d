#include "router/Router.h"

#include <algorithm>
#include <utility>

#include "bcm/error.h"

namespace router {
namespace {

using softcard::LabelAction;

constexpr unsigned kLoopback = 1;  // the device that every Linux has, of no VRF

}  // namespace

Router::Router(const HalL3MplsEncapsulationInterface& module, softcard::Tables& tables, limid_t cpu, Say say,
               Encapsulations::Why why)
    : tables_(tables),
      say_(std::move(say)),
      encapsulations_(
          module, cpu,
          [this](const Destination& destination) {
            moved_ = true;
            if (!destination.reason.empty()) say_(Text(destination.way) + ": " + destination.reason);
          },
          std::move(why)),
      next_hops_(encapsulations_, say_, [this] { moved_ = true; }) {
  vrfs_[kMainTable] = 0;
  vrf_of_devices_[kLoopback] = 0;
}

int Router::SetInterface(unsigned ifindex, const InterfaceValues& values) {
  const auto known = encapsulations_.interfaces().find(ifindex);
  const bool is_known = known != encapsulations_.interfaces().end();
  const InterfaceValues before = is_known ? known->second.values : values;
  // What is on the card for another VLAN, or in another VRF, cannot become this one's: it goes, and comes anew.
  const bool moves = before.vlan.word != values.vlan.word || before.vrf != values.vrf;
  const auto neighbours = NeighboursOn(ifindex);
  if (moves) RemoveInterface(ifindex);
  hosts_moved_ = true;
  const int result = encapsulations_.SetInterface(ifindex, values);
  if (moves && result < 0) {
    encapsulations_.SetInterface(ifindex, before);
    for (const auto& [neighbour, mac] : neighbours) encapsulations_.SetNeighbour(neighbour, mac);
  }
  Settle();
  return result;
}

int Router::RemoveInterface(unsigned ifindex) {
  const auto known = encapsulations_.interfaces().find(ifindex);
  if (known == encapsulations_.interfaces().end()) return BCM_E_NOT_FOUND;
  const unsigned vlan_destination = known->second.id;
  hosts_moved_ = true;
  encapsulations_.RemoveInterface(ifindex);
  for (const auto& [neighbour, mac] : NeighboursOn(ifindex)) encapsulations_.RemoveNeighbour(neighbour);
  own_.erase(own_.lower_bound({ifindex, {}}), own_.lower_bound({ifindex + 1, {}}));
  Settle();
  return encapsulations_.IsLeaving(vlan_destination) ? BCM_E_FAIL : BCM_E_NONE;
}

void Router::SetVrfDevice(unsigned ifindex, unsigned vrf, std::uint32_t table) {
  const auto known = vrfs_.find(table);
  if (known != vrfs_.end() && known->second != vrf) {
    routes_.ForEach([&](const RouteKey& key, Route& route) {
      if (key.table == table) Write(key, 0, &route.placed);
    });
    for (auto& [neighbour, host] : hosts_) {
      if (host.key.table == table) Write(host.key, 0, &host.placed);
    }
  }
  vrfs_[table] = vrf;
  vrf_of_devices_[ifindex] = vrf;
  moved_ = hosts_moved_ = true;
  Settle();
}

void Router::Begin() {
  routes_.ForEach([](const RouteKey&, Route& route) { route.told = false; });
  for (auto& [label, row] : labels_) row.told = false;
  next_hops_.Begin();
}

void Router::Hear(const std::vector<Told>& told) {
  for (std::size_t i = 0; i < told.size(); ++i) {
    const auto* const route = std::get_if<RouteTold>(&told[i]);
    if (route != nullptr && route->gone && i + 1 < told.size()) {
      // A change is told as the old one's end and the new one; packets come in between.
      const auto* const next = std::get_if<RouteTold>(&told[i + 1]);
      if (next != nullptr && next->table == route->table && next->prefix == route->prefix) continue;
    }
    std::visit([this](const auto& one) { Hear(one); }, told[i]);
  }
}

void Router::Hear(const RouteTold& told) {
  const RouteKey key{told.table, told.prefix};
  if (told.gone) {
    Route* const known = routes_.Find(key);
    if (known != nullptr) Remove(key, *known);
    return;
  }
  Route& route = routes_.Get(key);
  route.told = true;
  if (route.next_hop != nullptr && route.next_hop->Is(told.next_hop, told.ways)) return Check(key, route);
  NextHop* const before = std::exchange(route.next_hop, &next_hops_.Acquire(told.next_hop, told.ways));
  Place(key, route);
  if (before != nullptr) next_hops_.Release(*before);
  if (before == nullptr) PlaceHostsAt(key);
  if (!VrfOf(told.table) && unknown_tables_.insert(told.table).second) {
    say_("routes of table " + std::to_string(told.table) + " stay out: no vrf-device statement says whose they are");
  }
}

/// A row that somebody has taken away or changed by hand comes back when it is told again, but for one that a longer
/// prefix of the same address hides.
void Router::Check(const RouteKey& key, Route& route) {
  const auto vrf = VrfOf(key.table);
  if (route.placed == 0 || !vrf) return;
  const auto found = tables_.routes.Find(*vrf, key.prefix.address.version, key.prefix.address.bytes.data());
  const bool is_hidden = found.value != nullptr && found.length > key.prefix.length;
  const bool is_there = found.value != nullptr && found.length == key.prefix.length && *found.value == route.placed;
  if (is_hidden || is_there) return;
  route.placed = 0;
  Place(key, route);
}

void Router::Remove(const RouteKey& key, Route& route) {
  Write(key, 0, &route.placed);
  if (route.punted) --punted_;
  SetConnected(key, route, false);
  next_hops_.Release(*route.next_hop);
  routes_.Erase(key);
  PlaceHostsAt(key);
}

void Router::Hear(const LabelTold& told) {
  const auto known = labels_.find(told.label);
  if (told.gone) {
    if (known != labels_.end()) Remove(known);
    return;
  }
  Label& row = known != labels_.end() ? known->second : labels_[told.label];
  row.told = true;
  const bool ends = told.ways.size() == 1 && told.ways[0].kind == Way::Kind::kPopVrf;
  const std::optional<unsigned> device = ends ? std::optional(told.ways[0].ifindex) : std::nullopt;
  if (row.device == device && (row.next_hop == nullptr ? ends : row.next_hop->Is(0, told.ways))) {
    const LabelAction found = tables_.labels.Find(told.label);
    if (found.kind == row.placed.kind && found.value == row.placed.value) return;
    row.placed = {};
    return Place(told.label, row);
  }
  row.device = device;
  NextHop* const before = std::exchange(row.next_hop, ends ? nullptr : &next_hops_.Acquire(0, told.ways));
  Place(told.label, row);
  if (before != nullptr) next_hops_.Release(*before);
  if (row.next_hop == nullptr && row.placed.kind == LabelAction::Kind::kNone) {
    say_("label " + std::to_string(told.label) + ": " + WhyNot(row));
  }
}

void Router::Remove(LabelsTold::iterator place) {
  Label& row = place->second;
  if (row.placed.kind != LabelAction::Kind::kNone) tables_.labels.Delete(place->first);
  if (row.refusal != 0) --refused_labels_;
  if (row.next_hop != nullptr) next_hops_.Release(*row.next_hop);
  labels_.erase(place);
  if (refused_labels_ > 0) moved_ = true;  // there may be room for one
}

/// What punted routes go to.
const Destination& Router::Processor() {
  if (processor_ == nullptr) {
    Way way;
    way.kind = Way::Kind::kProcessor;
    processor_ = &encapsulations_.Acquire(way);
  }
  return *processor_;
}

std::optional<unsigned> Router::VrfOf(std::uint32_t table) const {
  if (table == kMainTable) return 0;
  const auto known = vrfs_.find(table);
  return known == vrfs_.end() ? std::nullopt : std::optional(known->second);
}

/// Brings the route where its next hop is now.
void Router::Place(const RouteKey& key, Route& route) {
  const bool usable = route.next_hop->IsUsable();
  const bool punted = !usable && VrfOf(key.table).has_value();
  if (punted && !route.punted) ++punted_;
  if (!punted && route.punted) --punted_;
  route.punted = punted;
  const Destination* const destination = usable ? route.next_hop->destination : punted ? &Processor() : nullptr;
  const bool absent = destination == nullptr || destination->state == Destination::State::kAbsent;
  const unsigned before = route.placed;
  Write(key, absent ? 0 : destination->id, &route.placed);
  if (route.placed != before) SetConnected(key, route, false);  // perhaps another interface's
  SetConnected(key, route, usable && destination->way.kind == Way::Kind::kDeliver && !destination->way.gateway);
}

/// Id 0: no destination.
void Router::Write(const RouteKey& key, unsigned id, unsigned* placed) {
  if (id == 0) unplaced_.erase(key);
  const std::optional<unsigned> vrf = VrfOf(key.table);
  if (id == *placed || !vrf) return;
  if (id == 0) {
    tables_.routes.Delete(*vrf, key.prefix);
    room_ = true;
    *placed = 0;
    return;
  }
  const int result = tables_.routes.Set(*vrf, key.prefix, id);
  if (result == BCM_E_NONE) {
    *placed = id;
    unplaced_.erase(key);
    return;
  }
  unplaced_.insert(key);
  if (!std::exchange(is_full_said_, true)) {
    say_("the card's route table is full: of its " + std::to_string(tables_.routes.size()) +
         " routes none is free for what comes");
  }
}

void Router::SetConnected(const RouteKey& key, Route& route, bool connected) {
  if (connected == route.connected) return;
  route.connected = connected;
  hosts_moved_ = true;
  if (connected) return connected_.push_back({route.next_hop->destination->way.ifindex, key});
  connected_.erase(std::find_if(connected_.begin(), connected_.end(),
                                [&key](const Connected& network) { return network.key == key; }));
}

void Router::Place(unsigned label, Label& row) {
  LabelAction action;
  if (row.device) {
    const auto vrf = vrf_of_devices_.find(*row.device);
    if (vrf != vrf_of_devices_.end()) action = {LabelAction::Kind::kPopVrf, vrf->second};
  } else if (row.next_hop->IsUsable()) {
    action = {LabelAction::Kind::kDestination, row.next_hop->destination->id};
  }
  if (action.kind == row.placed.kind && action.value == row.placed.value && row.refusal == 0) return;
  const bool was_refused = row.refusal != 0;
  if (was_refused) --refused_labels_;
  row.refusal = 0;
  if (action.kind == LabelAction::Kind::kNone) {
    if (row.placed.kind != LabelAction::Kind::kNone) tables_.labels.Delete(label);
    row.placed = action;
    return;
  }
  row.refusal = tables_.labels.Set(label, action, tables_.ports);
  if (row.refusal == BCM_E_NONE) {
    row.placed = action;
    return;
  }
  ++refused_labels_;
  if (was_refused || (row.refusal == BCM_E_FULL && std::exchange(is_label_table_full_said_, true))) return;
  say_("label " + std::to_string(label) + ": " + WhyNot(row));
}

void Router::PlaceUnplaced() {
  while (!unplaced_.empty() && tables_.routes.count() < tables_.routes.size()) {
    const RouteKey key = *unplaced_.begin();
    unplaced_.erase(unplaced_.begin());
    Route* const route = routes_.Find(key);
    if (route != nullptr) {
      Place(key, *route);
    } else {
      hosts_moved_ = true;  // a host's
    }
  }
}

void Router::Settle() {
  do {
    encapsulations_.Retry();
    if (std::exchange(moved_, false)) {
      hosts_moved_ = true;
      routes_.ForEach([this](const RouteKey& key, Route& route) { Place(key, route); });
      for (auto& [label, row] : labels_) Place(label, row);
    }
    if (std::exchange(room_, false)) PlaceUnplaced();
    if (std::exchange(hosts_moved_, false)) PlaceHosts();
    if (unplaced_.empty()) is_full_said_ = false;
    if (refused_labels_ == 0) is_label_table_full_said_ = false;
    next_hops_.Clear();
    if (processor_ != nullptr && punted_ == 0) encapsulations_.Release(*std::exchange(processor_, nullptr));
    encapsulations_.Clear();
  } while (moved_ || encapsulations_.HasSomethingHelped());
}

void Router::Sweep() {
  std::vector<RouteKey> gone;
  routes_.ForEach([&gone](const RouteKey& key, const Route& route) {
    if (!route.told) gone.push_back(key);
  });
  for (const RouteKey& key : gone) Remove(key, *routes_.Find(key));
  for (auto place = labels_.begin(); place != labels_.end();) {
    const auto next = std::next(place);
    if (!place->second.told) Remove(place);
    place = next;
  }
  next_hops_.Sweep();
  Settle();
}

std::optional<unsigned> Router::FindInterface(limid_t port, limid_t vlan) const {
  for (const auto& [ifindex, interface] : encapsulations_.interfaces()) {
    if (interface.values.port.word == port.word && interface.values.vlan.word == vlan.word) return ifindex;
  }
  return std::nullopt;
}

std::string Router::WhyNot(const RouteKey& key, const Route& route) const {
  if (!VrfOf(key.table)) return "no vrf-device statement says whose table " + std::to_string(key.table) + " is";
  if (!route.next_hop->IsUsable()) return route.next_hop->WhyNot();
  return route.placed == 0 ? "the card's route table is full" : "";
}

std::string Router::WhyNot(const Label& row) const {
  if (row.refusal == BCM_E_FULL) return "the card's label table is full";
  if (row.refusal != 0) return "the card takes no such label";
  if (row.placed.kind != LabelAction::Kind::kNone) return "";
  if (row.device) return "no vrf-device statement says whose interface " + std::to_string(*row.device) + " is";
  return row.next_hop->WhyNot();
}

}  // namespace router
