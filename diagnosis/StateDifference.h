#ifndef DIAGNOSIS_STATE_DIFFERENCE_H
#define DIAGNOSIS_STATE_DIFFERENCE_H

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "diagnosis/Changes.h"

namespace diagnosis {

/// A row that is on one side only, or on both with other values.
using RowChange = std::pair<std::optional<softcard::Row>, std::optional<softcard::Row>>;

/// What has changed of a destination.
struct DestinationChanges {
  std::optional<std::int64_t> destination;  ///< nothing: of rows that no destination accounts for
  std::vector<RowChange> rows;
};

/// Two cards' rows, destination by destination in the order of their ids, and last what is nobody's. A row is its
/// destination's whose record names it, or whose record's interface is on its VLAN.
std::vector<DestinationChanges> ByDestination(const Rows& before, const Rows& after);

}  // namespace diagnosis

#endif
