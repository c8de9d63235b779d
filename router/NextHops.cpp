#include "router/NextHops.h"

#include <algorithm>
#include <utility>

namespace router {
namespace {

constexpr unsigned kDeepest = 4;       // of groups in groups
constexpr std::size_t kMostWays = 64;  // of a group, one of which is one too many already

}  // namespace

NextHop& NextHops::Acquire(std::uint32_t id, const Ways& ways) {
  if (id != 0) {
    Object& object = objects_[id];
    object.next_hop.id = id;
    if (object.next_hop.users == 0) Resolve(id, object);
    ++object.next_hop.users;
    return object.next_hop;
  }
  const auto place = inline_.try_emplace(ways).first;
  NextHop& next_hop = place->second;
  next_hop.ways = &place->first;
  if (next_hop.users == 0) Resolve(next_hop, ways, "", "");
  ++next_hop.users;
  return next_hop;
}

void NextHops::Release(NextHop& next_hop) {
  if (--next_hop.users > 0) return;
  if (next_hop.destination != nullptr) left_.push_back(std::exchange(next_hop.destination, nullptr));
  next_hop.reason.clear();
  if (next_hop.id != 0) {
    Drop(objects_.find(next_hop.id));
  } else {
    inline_.erase(inline_.find(*next_hop.ways));
  }
}

void NextHops::Hear(const NextHopTold& told) {
  if (told.gone) return Forget(told.id);
  Object& object = objects_[told.id];
  object.told = true;
  if (object.known && object.ways == told.ways && object.members == told.members) return;
  LeaveGroups(told.id, object);
  object.known = true;
  object.ways = told.ways;
  object.members = told.members;
  for (const std::uint32_t member : told.members) objects_[member].groups.insert(told.id);
  Changed(told.id);
}

void NextHops::Forget(std::uint32_t id) {
  const auto object = objects_.find(id);
  if (object == objects_.end() || !object->second.known) return;
  LeaveGroups(id, object->second);
  object->second.known = false;
  object->second.ways.clear();
  object->second.members.clear();
  Changed(id);
  Drop(object);
}

/// What nobody has told and nobody asks for is nothing.
void NextHops::Drop(Objects::iterator object) {
  const Object& idle = object->second;
  if (!idle.known && idle.next_hop.users == 0 && idle.groups.empty()) objects_.erase(object);
}

void NextHops::LeaveGroups(std::uint32_t id, const Object& object) {
  for (const std::uint32_t member_id : object.members) {
    const auto member = objects_.find(member_id);
    if (member == objects_.end()) continue;
    member->second.groups.erase(id);
    if (member_id != id) Drop(member);
  }
}

/// Resolves it and the groups that it is in anew.
void NextHops::Changed(std::uint32_t id) {
  std::vector<std::uint32_t> changed{id};
  for (std::size_t i = 0; i < changed.size(); ++i) {
    Object& object = objects_.at(changed[i]);
    if (object.next_hop.users > 0) Resolve(changed[i], object);
    for (const std::uint32_t group : object.groups) {
      if (std::find(changed.begin(), changed.end(), group) == changed.end()) changed.push_back(group);
    }
  }
}

/// Appends an object's ways. Why it has none, when it has none.
std::string NextHops::Collect(std::uint32_t id, unsigned depth, Ways* ways) const {
  const auto object = objects_.find(id);
  const bool is_known = object != objects_.end() && object->second.known;
  if (!is_known) return "next hop " + std::to_string(id) + " has not been told";
  if (depth > kDeepest) return "a group of next hops in itself, or in too many others";
  for (const std::uint32_t member : object->second.members) {
    if (ways->size() >= kMostWays) break;
    std::string why = Collect(member, depth + 1, ways);
    if (!why.empty()) return why;
  }
  ways->insert(ways->end(), object->second.ways.begin(), object->second.ways.end());
  return "";
}

void NextHops::Resolve(std::uint32_t id, Object& object) {
  Ways ways;
  std::string reason = Collect(id, 0, &ways);
  Resolve(object.next_hop, ways, std::move(reason), object.known ? "next hop " + std::to_string(id) + ", " : "");
}

void NextHops::Resolve(NextHop& next_hop, const Ways& ways, std::string reason, const std::string& name) {
  const bool is_one = std::all_of(ways.begin(), ways.end(), [&](const Way& way) { return way == ways.front(); });
  const bool told = reason.empty();
  if (told && ways.empty()) reason = "it leads nowhere";
  if (told && !is_one) reason = std::to_string(ways.size()) + " equal paths; the chip takes one";
  Destination* const destination = reason.empty() ? &encapsulations_.Acquire(ways.front()) : nullptr;
  const bool is_another = destination != next_hop.destination;
  if (next_hop.destination != nullptr) left_.push_back(next_hop.destination);
  next_hop.destination = destination;
  next_hop.reason = std::move(reason);
  // What has not been told yet will be.
  if (told && !next_hop.IsUsable() && next_hop.said != next_hop.WhyNot()) {
    next_hop.said = next_hop.WhyNot();
    say_(name + Text(ways) + ": " + next_hop.said);
  }
  if (is_another && next_hop.users > 0) moved_();
}

void NextHops::Begin() {
  for (auto& [id, object] : objects_) object.told = false;
}

void NextHops::Sweep() {
  std::vector<std::uint32_t> gone;
  for (const auto& [id, object] : objects_) {
    if (object.known && !object.told) gone.push_back(id);
  }
  for (const std::uint32_t id : gone) Forget(id);
}

void NextHops::Clear() {
  for (Destination* const destination : std::exchange(left_, {})) encapsulations_.Release(*destination);
}

}  // namespace router
