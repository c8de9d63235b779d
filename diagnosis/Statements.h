#ifndef DIAGNOSIS_STATEMENTS_H
#define DIAGNOSIS_STATEMENTS_H

#include "diagnosis/Changes.h"
#include "diagnosis/Ledger.h"
#include "scenario/Language.h"

/// What this room adds to the language.
namespace diagnosis {

/// audit, expect clean. The ledger watches the runs of scenarios that have one of them; it lives as long as the
/// language.
void AddAudit(scenario::Language& language, Ledger& ledger);

/// show changes, mark, save. The mark lives as long as the language.
void AddDifferences(scenario::Language& language, Mark& mark);

/// show usage, who.
void AddUsers(scenario::Language& language);

}  // namespace diagnosis

#endif
