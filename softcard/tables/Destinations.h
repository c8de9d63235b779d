#ifndef SOFTCARD_TABLES_DESTINATIONS_H
#define SOFTCARD_TABLES_DESTINATIONS_H

#include <map>
#include <vector>

#include "DestinationIdCorrelator.h"
#include "softcard/tables/Row.h"

namespace softcard {

/// The records of the installed destinations, as HalBcmCommon has them, by id.
using Records = std::map<int, DestinationIdCorrelator&>;
/// Null for a destination that is not installed.
const DestinationIdCorrelator* FindRecord(const Records& records, unsigned destination_id);

extern const TableDescription kDestinationDescription;
Row MakeRow(int destination_id, const DestinationIdCorrelator& record);
std::vector<Row> Rows(const Records& records);

}  // namespace softcard

#endif
