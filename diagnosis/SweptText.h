#ifndef DIAGNOSIS_SWEPT_TEXT_H
#define DIAGNOSIS_SWEPT_TEXT_H

#include <string>
#include <vector>

#include "diagnosis/Sweep.h"

/// What a branch of a sweep reports, as a text that only the same program reads.
namespace diagnosis {

struct BranchReport {
  std::string request;  ///< its text; empty: what came next was no request
  std::string file;
  unsigned line = 0;
  scenario::Counters rounds;
  SweepOutcome outcome;            ///< without what was refused, which is known already
  std::vector<RefusedCall> calls;  ///< that could be refused, with what they returned
};

std::string ToText(const BranchReport& report);
BranchReport ReadBranchReport(const std::string& text);

}  // namespace diagnosis

#endif
