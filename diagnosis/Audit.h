#ifndef DIAGNOSIS_AUDIT_H
#define DIAGNOSIS_AUDIT_H

#include <string>
#include <vector>

#include "diagnosis/Ledger.h"
#include "softcard/Card.h"

namespace diagnosis {

/// Something on the card that is not as the records of its destinations have it.
struct Finding {
  std::string object;   ///< "intf 2", "destination 30"
  std::string problem;  ///< "no record accounts for it"
  std::string cause;    ///< the request that most likely left it; "unknown" when the run does not tell
  std::string packet;   ///< what a packet would meet
  std::string remedy;   ///< the request that cleans up, or that none does
};

/// Holds the records against the tables: what no record accounts for, what a record names and is not there, and what
/// does not fit together. The ledger tells which operation made a destination; without it that is read from what the
/// destination holds.
std::vector<Finding> Audit(const softcard::Card& card, const Ledger& ledger);

/// The findings as rows of a table of their own.
std::vector<softcard::Row> ToRows(const std::vector<Finding>& findings);

}  // namespace diagnosis

#endif
