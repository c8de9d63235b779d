#include <algorithm>
#include <string>
#include <unordered_map>

#include "router/Router.h"
#include "softcard/tables/Row.h"

namespace router {

using calls::Kind;
using calls::ToValue;
using softcard::Origin;
using softcard::Row;
using softcard::TableDescription;

const TableDescription kNextHopTable = {"nexthops",
                                        "nexthop",
                                        Origin::kMadeByRequests,
                                        {"destination", Kind::kNumber},
                                        {{"way", Kind::kText},
                                         {"labels", Kind::kText},
                                         {"gateway", Kind::kText},
                                         {"interface", Kind::kNumber},
                                         {"users", Kind::kNumber},
                                         {"state", Kind::kText}}};

const TableDescription kNeighbourTable = {
    "neighbours",
    "neighbour",
    Origin::kMadeByRequests,
    {"address", Kind::kText},
    {{"interface", Kind::kNumber}, {"mac", Kind::kMac}, {"destination", Kind::kNumber}}};

const TableDescription kUnresolvedTable = {"unresolved",
                                           "unresolved",
                                           Origin::kMadeByRequests,
                                           {"what", Kind::kText},
                                           {{"table", Kind::kNumber}, {"reason", Kind::kText}}};

namespace {

const char* Name(Destination::State state) {
  switch (state) {
    case Destination::State::kWaiting: return "waiting";
    case Destination::State::kReady: return "ready";
    case Destination::State::kAbsent: break;
  }
  return "absent";
}

std::string OrNone(std::string text) { return text.empty() ? "none" : text; }

Row UnresolvedRow(const std::string& what, std::uint32_t table, const std::string& reason) {
  return {&kUnresolvedTable, ToValue(what), {ToValue(table), ToValue(reason)}};
}

}  // namespace

std::vector<Row> Router::NextHopRows() const {
  std::unordered_map<const Destination*, unsigned long> users;
  next_hops_.ForEach([&users](const NextHop& next_hop) { users[next_hop.destination] += next_hop.users; });
  for (const auto& [neighbour, host] : hosts_) ++users[host.destination];
  users[processor_] += punted_;
  std::vector<const Destination*> by_id;
  for (const auto& [way, destination] : encapsulations_.destinations()) by_id.push_back(&destination);
  std::sort(by_id.begin(), by_id.end(),
            [](const Destination* one, const Destination* other) { return one->id < other->id; });
  std::vector<Row> rows;
  for (const Destination* const destination : by_id) {
    const Way& way = destination->way;
    rows.push_back({&kNextHopTable,
                    ToValue(destination->id),
                    {ToValue(Name(way.kind)), ToValue(OrNone(Text(way.labels))),
                     ToValue(way.gateway ? Text(*way.gateway) : "none"), ToValue(way.ifindex),
                     ToValue(users[destination]), ToValue(Name(destination->state))}});
  }
  return rows;
}

std::vector<Row> Router::NeighbourRows() const {
  std::vector<Row> rows;
  for (const auto& [neighbour, mac] : encapsulations_.neighbours()) {
    const auto host = hosts_.find(neighbour);
    rows.push_back(
        {&kNeighbourTable,
         ToValue(Text(neighbour.address)),
         {ToValue(neighbour.ifindex), ToValue(mac), ToValue(host == hosts_.end() ? 0 : host->second.placed)}});
  }
  return rows;
}

std::vector<Row> Router::UnresolvedRows() const {
  std::vector<Row> rows;
  routes_.ForEach([&](const RouteKey& key, const Route& route) {
    const std::string reason = WhyNot(key, route);
    if (!reason.empty()) rows.push_back(UnresolvedRow("route " + Text(key.prefix), key.table, reason));
  });
  for (const auto& [label, row] : labels_) {
    const std::string reason = WhyNot(row);
    if (!reason.empty()) rows.push_back(UnresolvedRow("label " + std::to_string(label), 0, reason));
  }
  for (const auto& [neighbour, host] : hosts_) {
    if (host.placed != 0) continue;
    const std::string& reason = host.destination->reason;
    rows.push_back(UnresolvedRow("host " + Text(neighbour.address), host.key.table,
                                 reason.empty() ? "the card's route table is full" : reason));
  }
  return rows;
}

}  // namespace router
