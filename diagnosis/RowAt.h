#ifndef DIAGNOSIS_ROW_AT_H
#define DIAGNOSIS_ROW_AT_H

#include <optional>

#include "diagnosis/Touches.h"
#include "softcard/Card.h"

namespace diagnosis {

/// The row at this place; nothing when there is none. Of a table that may be large it is found without a walk.
std::optional<softcard::Row> RowAt(const softcard::Card& card, const Place& place);

}  // namespace diagnosis

#endif
