#ifndef DIAGNOSIS_REPORT_H
#define DIAGNOSIS_REPORT_H

#include <string>
#include <vector>

#include "diagnosis/Audit.h"
#include "scenario/Run.h"

namespace diagnosis {

/// What a report tells of the card at the end of a run, as a JSON object: "card", its description; "tables", each with
/// its columns and rows and, for each row, which destinations use it; "destinations", each with what every packet to it
/// goes through and the story of one packet; "findings".
std::string ReportJson(scenario::Run& run, const scenario::Language& language, const Ledger& ledger,
                       const std::vector<Finding>& findings);

}  // namespace diagnosis

#endif
