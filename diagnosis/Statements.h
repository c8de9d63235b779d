#ifndef DIAGNOSIS_STATEMENTS_H
#define DIAGNOSIS_STATEMENTS_H

#include "diagnosis/Ledger.h"
#include "scenario/Language.h"

/// What this room adds to the language.
namespace diagnosis {

/// audit, expect clean. The ledger watches the runs of scenarios that have one of them; it lives as long as the
/// language.
void AddAudit(scenario::Language& language, Ledger& ledger);

}  // namespace diagnosis

#endif
