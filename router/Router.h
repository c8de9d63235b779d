#ifndef ROUTER_ROUTER_H
#define ROUTER_ROUTER_H

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "router/Encapsulations.h"
#include "router/NextHops.h"
#include "router/Routes.h"
#include "router/Told.h"
#include "softcard/Tables.h"

namespace router {

extern const softcard::TableDescription kNextHopTable;     ///< "nexthops"
extern const softcard::TableDescription kNeighbourTable;   ///< "neighbours"
extern const softcard::TableDescription kUnresolvedTable;  ///< "unresolved"

/// Turns what a control plane tells into encapsulations, by requests to the module, and into the card's routes and
/// labels. What it is told twice it does once. Whatever the chip cannot do is told of once, listed, and tried again
/// when something changes: a route's packets go to the CPU until then, a label has no row.
class Router {
 public:
  /// Neighbours that are kept; of those that nothing goes to, some are forgotten when there are more.
  static constexpr std::size_t kMostNeighbours = 65'536;
  static constexpr std::size_t kMostOwn = 4'096;  ///< addresses of the route processor that are kept
  static constexpr std::uint32_t kMainTable = 254;

  /// All of them outlive it. `say` is told what operators should know.
  Router(const HalL3MplsEncapsulationInterface& module, softcard::Tables& tables, limid_t cpu, Say say,
         Encapsulations::Why why = {});
  Router(const Router&) = delete;
  Router& operator=(const Router&) = delete;

  // What interfaces are on the card.

  /// The module's result: negative for a refusal, after which the interface is what it was. One that moves to another
  /// VLAN or VRF forgets its neighbours.
  int SetInterface(unsigned ifindex, const InterfaceValues& values);
  /// BCM_E_NOT_FOUND when there is none; another negative result when its VLAN encapsulation stays on the card, whose
  /// destruction is tried again later.
  int RemoveInterface(unsigned ifindex);
  /// Labels that end at this device, and the routes of this table, are the VRF's.
  void SetVrfDevice(unsigned ifindex, unsigned vrf, std::uint32_t table);

  // What a control plane tells.

  /// It tells everything from the beginning; what it does not tell again stays until Sweep().
  void Begin();
  /// In one breath: a route that goes and comes back stays.
  void Hear(const std::vector<Told>& told);
  /// What was heard has been all for now: moves and destroys what it has left behind.
  void Settle();
  /// Forgets what has not been told since Begin().
  void Sweep();
  /// Something has changed on the card, which may take now what it has refused.
  void MayHelp() { encapsulations_.MayHelp(); }

  // What passes by.

  /// Who has an address behind a port, by what has come from there on a VLAN. What the route processor has is nobody
  /// else's.
  void Learn(const Neighbour& neighbour, const Mac& mac);
  /// The same, by a frame that announces nothing: it counts for a next hop that is waited for.
  void Suppose(const Neighbour& neighbour, const Mac& mac);
  /// An address that the route processor says it has itself on an interface.
  void LearnOwn(const Neighbour& neighbour, const Mac& mac);
  /// The interface of a port and VLAN; nothing when there is none.
  std::optional<unsigned> FindInterface(limid_t port, limid_t vlan) const;

  std::size_t route_count() const { return routes_.size(); }
  std::size_t label_count() const { return labels_.size(); }
  std::uint64_t requests() const { return encapsulations_.requests(); }

  // What there is, as rows: the destinations, with how many routes, labels and hosts go there; the neighbours; what is
  // not on the card as it was told.
  std::vector<softcard::Row> NextHopRows() const;
  std::vector<softcard::Row> NeighbourRows() const;
  std::vector<softcard::Row> UnresolvedRows() const;

 private:
  struct Connected {
    unsigned ifindex;
    RouteKey key;
  };
  struct Label {
    NextHop* next_hop = nullptr;       ///< null: it ends here
    std::optional<unsigned> device{};  ///< where it ends
    softcard::LabelAction placed{};
    int refusal = 0;  ///< of the card's table
    bool told = false;
  };
  /// A host on an interface's network, which no route was told for.
  struct Host {
    Destination* destination;
    RouteKey key;
    unsigned placed;
  };
  using LabelsTold = std::map<unsigned, Label>;

  void Hear(const RouteTold& told);
  void Hear(const LabelTold& told);
  void Hear(const NextHopTold& told) { next_hops_.Hear(told); }
  void Check(const RouteKey& key, Route& route);
  void Remove(const RouteKey& key, Route& route);
  void Remove(LabelsTold::iterator place);
  void Place(const RouteKey& key, Route& route);
  void Place(unsigned label, Label& row);
  void Write(const RouteKey& key, unsigned id, unsigned* placed);
  void PlaceHost(const Neighbour& neighbour);
  void PlaceHostsAt(const RouteKey& key);
  void PlaceHosts();
  void PlaceUnplaced();
  std::map<Neighbour, Mac> NeighboursOn(unsigned ifindex) const;
  std::optional<RouteKey> HostRouteOf(const Neighbour& neighbour) const;
  void SetConnected(const RouteKey& key, Route& route, bool connected);
  void ForgetNeighbours();
  const Destination& Processor();
  std::optional<unsigned> VrfOf(std::uint32_t table) const;
  std::string WhyNot(const RouteKey& key, const Route& route) const;
  std::string WhyNot(const Label& row) const;

  softcard::Tables& tables_;
  const Say say_;
  Encapsulations encapsulations_;
  NextHops next_hops_;
  std::unordered_map<std::uint32_t, unsigned> vrfs_;       ///< by table
  std::unordered_map<unsigned, unsigned> vrf_of_devices_;  ///< by interface
  Routes routes_;
  LabelsTold labels_;
  std::vector<Connected> connected_;  ///< the networks of interfaces
  std::map<Neighbour, Host> hosts_;
  std::set<Neighbour> own_;                 ///< the route processor's
  std::set<Neighbour> forged_;              ///< of these, whom others said to have
  std::set<RouteKey> unplaced_;             ///< for want of room
  std::set<std::uint32_t> unknown_tables_;  ///< that were told of
  Destination* processor_ = nullptr;
  unsigned long punted_ = 0;  ///< routes to the CPU
  unsigned long refused_labels_ = 0;
  bool moved_ = false;         ///< next hops that routes and labels go to
  bool hosts_moved_ = true;    ///< what decides about hosts
  bool room_ = false;          ///< in the card's route table
  bool is_full_said_ = false;  ///< of the route table
  bool is_label_table_full_said_ = false;
};

}  // namespace router

#endif
