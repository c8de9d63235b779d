#ifndef DIAGNOSIS_STATE_H
#define DIAGNOSIS_STATE_H

#include <string>

#include "diagnosis/Attempt.h"

/// Saved states of a card: JSON, as docs/state-1.schema.json describes it.
namespace diagnosis {

/// The card's description and the rows of all its tables.
std::string StateJson(const softcard::Card& card);

/// What the card has: ports, sizes of tables, ids.
std::string DescriptionJson(const softcard::CardDescription& description);

/// The rows of a saved state, table by table. Throws std::runtime_error with the reason and the remedy for a file that
/// cannot be read, is no state, is one of another version, or is not as it was written.
Rows ReadState(const std::string& path);

}  // namespace diagnosis

#endif
