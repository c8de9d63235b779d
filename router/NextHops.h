#ifndef ROUTER_NEXT_HOPS_H
#define ROUTER_NEXT_HOPS_H

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "router/Encapsulations.h"

namespace router {

using Say = std::function<void(const std::string&)>;

/// Where the packets of routes or labels go that were told the same: one encapsulation, when the chip can do it.
struct NextHop {
  std::uint32_t id = 0;        ///< of the object; 0: none, but
  const Ways* ways = nullptr;  ///< what the routes and labels were told themselves
  Destination* destination = nullptr;
  std::string reason{};     ///< why there is none
  std::string said{};       ///< of the reasons the last one that operators were told
  unsigned long users = 0;  ///< routes and labels

  bool Is(std::uint32_t other_id, const Ways& other_ways) const {
    return id == other_id && (id != 0 || *ways == other_ways);
  }
  bool IsUsable() const { return destination != nullptr && destination->state != Destination::State::kAbsent; }
  const std::string& WhyNot() const { return destination != nullptr ? destination->reason : reason; }
};

/// The next hops that a control plane has told, as objects with ids, alone or in groups, or inside of routes.
class NextHops {
 public:
  /// Both outlive it. `moved` is told when a next hop that is used has become another one, before the destination that
  /// it was is given back, by Clear().
  NextHops(Encapsulations& encapsulations, Say say, std::function<void()> moved)
      : encapsulations_(encapsulations), say_(std::move(say)), moved_(std::move(moved)) {}

  /// For one user more: the object's, which may not have been told yet, or with id 0 that of the ways.
  NextHop& Acquire(std::uint32_t id, const Ways& ways);
  void Release(NextHop& next_hop);

  void Hear(const NextHopTold& told);
  /// All objects have to be told again, or Sweep() forgets them.
  void Begin();
  void Sweep();
  /// Gives back what next hops do not go to any more.
  void Clear();

  template <typename Visit>
  void ForEach(const Visit& visit) const {
    for (const auto& [id, object] : objects_) visit(object.next_hop);
    for (const auto& [ways, next_hop] : inline_) visit(next_hop);
  }

 private:
  struct Object {
    bool known = false;  ///< told, and not only asked for
    bool told = false;   ///< since the last Begin()
    Ways ways{};
    std::vector<std::uint32_t> members{};
    std::set<std::uint32_t> groups{};  ///< that it is a member of
    NextHop next_hop{};
  };
  using Objects = std::unordered_map<std::uint32_t, Object>;

  void Forget(std::uint32_t id);
  void Drop(Objects::iterator object);
  void LeaveGroups(std::uint32_t id, const Object& object);
  void Changed(std::uint32_t id);
  std::string Collect(std::uint32_t id, unsigned depth, Ways* ways) const;
  void Resolve(std::uint32_t id, Object& object);
  void Resolve(NextHop& next_hop, const Ways& ways, std::string reason, const std::string& name);

  Encapsulations& encapsulations_;
  const Say say_;
  const std::function<void()> moved_;
  Objects objects_;
  std::unordered_map<Ways, NextHop, Hash> inline_;
  std::vector<Destination*> left_;
};

}  // namespace router

#endif
