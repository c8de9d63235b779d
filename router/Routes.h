#ifndef ROUTER_ROUTES_H
#define ROUTER_ROUTES_H

#include <cstdint>
#include <deque>
#include <map>
#include <vector>

#include "router/NextHops.h"
#include "softcard/tables/PrefixTree.h"

namespace router {

/// A prefix in one of the control plane's routing tables.
struct RouteKey {
  std::uint32_t table;
  softcard::Prefix prefix;
};
inline bool operator==(const RouteKey& one, const RouteKey& other) {
  return one.table == other.table && one.prefix == other.prefix;
}
/// By table, IP version and address, the shorter of two prefixes that begin alike first.
bool operator<(const RouteKey& one, const RouteKey& other);

/// A route that was told.
struct Route {
  NextHop* next_hop = nullptr;
  unsigned placed = 0;     ///< the destination that it has on the card; 0: it is not there
  bool told = false;       ///< since the control plane began to tell
  bool punted = false;     ///< to the CPU, for want of a next hop that the card can do
  bool connected = false;  ///< an interface's network
};

/// The routes by their keys, in as little memory as a million of them deserve: near each other in the tables, near each
/// other in memory. A route stays where it is until it is erased.
class Routes {
 public:
  /// Null for a key without a route.
  Route* Find(const RouteKey& key);
  const Route* Find(const RouteKey& key) const { return const_cast<Routes*>(this)->Find(key); }
  /// The key's route, a new one when it had none.
  Route& Get(const RouteKey& key);
  void Erase(const RouteKey& key);

  std::size_t size() const { return routes_.size() - free_.size(); }

  /// Tells every route in the order of the keys. None may come or go meanwhile.
  template <typename Visit>
  void ForEach(const Visit& visit) const {
    for (const auto& table : tables_) {
      const auto tell = [&](const softcard::Prefix& prefix, std::uint32_t place) {
        visit(RouteKey{table.first, prefix}, routes_[place]);
      };
      table.second.v4.ForEach(softcard::IpAddress::Version::k4, tell);
      table.second.v6.ForEach(softcard::IpAddress::Version::k6, tell);
    }
  }
  template <typename Visit>
  void ForEach(const Visit& visit) {
    const Routes& routes = *this;
    routes.ForEach([&visit](const RouteKey& key, const Route& route) { visit(key, const_cast<Route&>(route)); });
  }

 private:
  struct Table {
    softcard::PrefixTree v4;  ///< of places in routes_
    softcard::PrefixTree v6;

    softcard::PrefixTree& Of(const softcard::Prefix& prefix) {
      return prefix.address.version == softcard::IpAddress::Version::k4 ? v4 : v6;
    }
  };

  std::map<std::uint32_t, Table> tables_;
  std::deque<Route> routes_;
  std::vector<std::uint32_t> free_;  ///< places
};

}  // namespace router

#endif
