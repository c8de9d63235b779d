#include <utility>
#include <vector>

#include "router/Router.h"

namespace router {
namespace {

using softcard::IpAddress;

/// Whether nobody routes it.
bool IsLinkLocal(const IpAddress& address) {
  if (address.version == IpAddress::Version::k4) return address.bytes[0] == 169 && address.bytes[1] == 254;
  return address.bytes[0] == 0xFE && (address.bytes[1] & 0xC0) == 0x80;
}

}  // namespace

std::map<Neighbour, Mac> Router::NeighboursOn(unsigned ifindex) const {
  const auto& all = encapsulations_.neighbours();
  return {all.lower_bound({ifindex, {}}), all.lower_bound({ifindex + 1, {}})};
}

/// The host route that a neighbour gets: on an interface's network, where no route was told for it alone.
std::optional<RouteKey> Router::HostRouteOf(const Neighbour& neighbour) const {
  if (IsLinkLocal(neighbour.address)) return std::nullopt;
  for (const Connected& network : connected_) {
    if (network.ifindex != neighbour.ifindex || !network.key.prefix.Contains(neighbour.address)) continue;
    const RouteKey key{network.key.table, {neighbour.address, neighbour.address.bits()}};
    return routes_.Find(key) == nullptr ? std::optional(key) : std::nullopt;
  }
  return std::nullopt;
}

/// Gives a neighbour its host route, or takes it away.
void Router::PlaceHost(const Neighbour& neighbour) {
  const bool is_there = encapsulations_.neighbours().count(neighbour) != 0;
  const std::optional<RouteKey> key = is_there ? HostRouteOf(neighbour) : std::nullopt;
  auto place = hosts_.find(neighbour);
  if (place != hosts_.end() && !(key && place->second.key == *key)) {
    Host& host = place->second;
    const Route* const told = routes_.Find(host.key);
    // A route that was told for it stands in its place already.
    if (told == nullptr || told->placed == 0) Write(host.key, 0, &host.placed);
    encapsulations_.Release(*host.destination);
    hosts_.erase(place);
    place = hosts_.end();
  }
  if (!key) return;
  if (place == hosts_.end()) {
    Way way;
    way.kind = Way::Kind::kDeliver;
    way.ifindex = neighbour.ifindex;
    way.gateway = neighbour.address;
    place = hosts_.emplace(neighbour, Host{&encapsulations_.Acquire(way), *key, 0}).first;
  }
  Host& host = place->second;
  const bool usable = host.destination->state != Destination::State::kAbsent;
  Write(*key, usable ? host.destination->id : 0, &host.placed);
}

/// Whom a route for one address alone may concern.
void Router::PlaceHostsAt(const RouteKey& key) {
  const IpAddress& address = key.prefix.address;
  if (key.prefix.length != address.bits()) return;
  for (const Connected& network : connected_) {
    if (network.key.table == key.table && network.key.prefix.Contains(address)) PlaceHost({network.ifindex, address});
  }
}

void Router::PlaceHosts() {
  std::vector<Neighbour> all;
  for (const auto& host : hosts_) all.push_back(host.first);
  for (const auto& neighbour : encapsulations_.neighbours()) {
    if (hosts_.count(neighbour.first) == 0) all.push_back(neighbour.first);
  }
  for (const Neighbour& neighbour : all) PlaceHost(neighbour);
}

void Router::LearnOwn(const Neighbour& neighbour, const Mac& mac) {
  const auto interface = encapsulations_.interfaces().find(neighbour.ifindex);
  if (interface == encapsulations_.interfaces().end() || interface->second.values.mac != mac) return;
  if (own_.size() >= kMostOwn || !own_.insert(neighbour).second) return;
  encapsulations_.RemoveNeighbour(neighbour);
  PlaceHost(neighbour);
  Settle();
}

void Router::Suppose(const Neighbour& neighbour, const Mac& mac) {
  if (encapsulations_.IsGateway(neighbour) && encapsulations_.neighbours().count(neighbour) == 0) Learn(neighbour, mac);
}

void Router::Learn(const Neighbour& neighbour, const Mac& mac) {
  if (own_.count(neighbour) != 0) {
    if (forged_.insert(neighbour).second) {
      say_(Text(neighbour.address) + " is the route processor's on interface " + std::to_string(neighbour.ifindex) +
           ", and " + calls::Text(calls::Kind::kMac, calls::ToValue(mac)) + " says that it has it: not believed");
    }
    return;
  }
  const auto& neighbours = encapsulations_.neighbours();
  const auto known = neighbours.find(neighbour);
  if (known != neighbours.end() && known->second == mac) return;
  if (known == neighbours.end() && neighbours.size() >= kMostNeighbours) {
    ForgetNeighbours();
    if (neighbours.size() >= kMostNeighbours) return;
  }
  encapsulations_.SetNeighbour(neighbour, mac);
  PlaceHost(neighbour);
  Settle();
}

/// Those that nothing goes to.
void Router::ForgetNeighbours() {
  std::vector<Neighbour> idle;
  for (const auto& [neighbour, mac] : encapsulations_.neighbours()) {
    if (!encapsulations_.IsGateway(neighbour)) idle.push_back(neighbour);
  }
  for (const Neighbour& neighbour : idle) encapsulations_.RemoveNeighbour(neighbour);
}

}  // namespace router
