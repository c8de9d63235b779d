#include "diagnosis/RowAt.h"

#include "softcard/tables/Destinations.h"

namespace diagnosis {

std::optional<softcard::Row> RowAt(const softcard::Card& card, const Place& place) {
  const softcard::Tables& tables = card.tables();
  const int key = static_cast<int>(place.key);
  if (place.table == "intfs") {
    const IntfObject* const intf = tables.intfs.Find(key);
    return intf == nullptr ? std::nullopt : std::optional(softcard::MakeRow(*intf));
  }
  if (place.table == "egresses") {
    const softcard::Egress* const egress = tables.egresses.Find(key);
    return egress == nullptr ? std::nullopt : std::optional(softcard::MakeRow(key, *egress, tables.ports));
  }
  if (place.table == "initiators") {
    const softcard::LabelStack* const labels = tables.initiators.Find(key);
    return labels == nullptr ? std::nullopt : std::optional(softcard::MakeRow(key, *labels));
  }
  if (place.table == "destinations") {
    const auto& records = card.common().destination_id_correlators;
    const auto record = records.find(key);
    return record == records.end() ? std::nullopt : std::optional(softcard::MakeRow(key, record->second));
  }
  for (const softcard::Row& row : card.Rows(place.table)) {
    const auto* const number = std::get_if<std::int64_t>(&row.key);
    if (number != nullptr && *number == place.key) return row;
  }
  return std::nullopt;
}

}  // namespace diagnosis
