#include "diagnosis/Changes.h"

#include <algorithm>
#include <set>

#include "diagnosis/RowAt.h"

namespace diagnosis {

namespace {

/// In the order of the tables, as everywhere.
void Sort(Rows& rows) {
  const auto tables = softcard::Card::TableDescriptions();
  const auto rank = [&tables](const softcard::Row& row) { return std::find(tables.begin(), tables.end(), row.table); };
  std::stable_sort(rows.begin(), rows.end(),
                   [&rank](const softcard::Row& a, const softcard::Row& b) { return rank(a) < rank(b); });
}

/// Routes of several VRFs have the same name.
std::string IdentityOf(const softcard::Row& row) {
  const bool is_route = row.table == &softcard::RouteTable::kDescription;
  return softcard::NameOf(row) + (is_route ? ' ' + std::to_string(std::get<std::int64_t>(row.values[0])) : "");
}

}  // namespace

Changes Compare(const Rows& before, const Rows& after) { return {Without(before, after), Without(after, before)}; }

void RequestChanges::Took(const scenario::Step& step) {
  const auto* const trace = std::get_if<scenario::Trace>(&step.content);
  if (trace == nullptr || step.kind == scenario::Kind::kPacket) return;
  std::set<std::pair<std::string_view, std::int64_t>> places;
  for (const Place& place : PlacesOf(*trace)) places.emplace(place.table, place.key);
  Changes changes;
  for (const auto& place : places) {
    const auto row = RowAt(card_, {place.first, place.second});
    const auto known = rows_.find(place);
    const bool was_there = known != rows_.end();
    if (was_there && row && softcard::Text(known->second) == softcard::Text(*row)) continue;
    if (was_there) changes.took.push_back(known->second);
    if (row) changes.put.push_back(*row);
    if (was_there) rows_.erase(known);
    if (row) rows_.emplace(place, *row);
  }
  if (trace->own_row) Follow(*trace->own_row, changes);
  for (Rows* rows : {&changes.took, &changes.put}) Sort(*rows);
  if (!changes.took.empty() || !changes.put.empty()) tell_(step, changes);
}

void RequestChanges::Follow(const scenario::OwnRow& own, Changes& changes) {
  const std::string identity = IdentityOf(own.row);
  const auto known = own_rows_.find(identity);
  const bool was_there = known != own_rows_.end();
  if (was_there && own.is_there && softcard::Text(known->second) == softcard::Text(own.row)) return;
  if (was_there) changes.took.push_back(known->second);
  if (own.is_there) changes.put.push_back(own.row);
  if (was_there) own_rows_.erase(known);
  if (own.is_there) own_rows_.emplace(identity, own.row);
}

}  // namespace diagnosis
