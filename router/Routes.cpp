#include "router/Routes.h"

#include <tuple>

namespace router {

bool operator<(const RouteKey& one, const RouteKey& other) {
  const auto of = [](const RouteKey& key) {
    const softcard::Prefix& prefix = key.prefix;
    return std::tie(key.table, prefix.address.version, prefix.address.bytes, prefix.length);
  };
  return of(one) < of(other);
}

Route* Routes::Find(const RouteKey& key) {
  const auto table = tables_.find(key.table);
  if (table == tables_.end()) return nullptr;
  const std::uint32_t* const place = table->second.Of(key.prefix).Find(key.prefix);
  return place == nullptr ? nullptr : &routes_[*place];
}

Route& Routes::Get(const RouteKey& key) {
  softcard::PrefixTree& tree = tables_[key.table].Of(key.prefix);
  if (const std::uint32_t* const place = tree.Find(key.prefix)) return routes_[*place];
  if (free_.empty()) {
    free_.push_back(static_cast<std::uint32_t>(routes_.size()));
    routes_.emplace_back();
  }
  const std::uint32_t place = free_.back();
  tree.Set(key.prefix, place);
  free_.pop_back();
  return routes_[place] = Route();
}

void Routes::Erase(const RouteKey& key) {
  const auto table = tables_.find(key.table);
  softcard::PrefixTree& tree = table->second.Of(key.prefix);
  free_.push_back(*tree.Find(key.prefix));
  tree.Delete(key.prefix);
  if (table->second.v4.empty() && table->second.v6.empty()) tables_.erase(table);
  if (free_.size() == routes_.size()) {
    free_.clear();
    routes_.clear();
  }
}

}  // namespace router
