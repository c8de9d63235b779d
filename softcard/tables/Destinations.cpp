#include "softcard/tables/Destinations.h"

namespace softcard {

using calls::Kind;

const TableDescription kDestinationDescription = {"destinations",
                                                  "destination",
                                                  Origin::kMadeByRequests,
                                                  {"id", Kind::kNumber},
                                                  {{"intf", Kind::kNumber}, {"egress", Kind::kNumber}}};

const DestinationIdCorrelator* FindRecord(const Records& records, unsigned destination_id) {
  const auto found = records.find(static_cast<int>(destination_id));
  return found == records.end() ? nullptr : &found->second;
}

Row MakeRow(int destination_id, const DestinationIdCorrelator& record) {
  // Callers know the id as unsigned.
  return {&kDestinationDescription,
          calls::ToValue(static_cast<unsigned>(destination_id)),
          {calls::ToValue(record.intf_id), calls::ToValue(record.egress_id)}};
}

std::vector<Row> Rows(const Records& records) {
  std::vector<Row> rows;
  for (const auto& [destination_id, record] : records) rows.push_back(MakeRow(destination_id, record));
  return rows;
}

}  // namespace softcard
