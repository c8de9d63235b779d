#include "recorder/ReplayReport.h"

#include "recorder/Difference.h"

namespace recorder {

void ReplayReport::Tell(const Step& step, const std::vector<std::string>& recorded, std::vector<std::string> now) {
  ++requests_;
  // What came behind the end of the recording nobody knows.
  if (!step.complete && now.size() > recorded.size()) now.resize(recorded.size());
  const auto difference = Difference(recorded, now);
  if (!difference.empty()) {
    ++different_;
    out_ << "line " << step.line << ": " << ActionText(step) << '\n';
    for (const std::string& line : difference) out_ << line << '\n';
    out_ << '\n';
  }
  if (!step.complete) out_ << "the recording ends in the request of line " << step.line << '\n';
}

void ReplayReport::Tell(const Remark& remark) { out_ << "the recording says: " << remark.text << '\n'; }

bool ReplayReport::End() {
  out_ << requests_ << " requests replayed, "
       << (different_ == 0 ? "no differences" : std::to_string(different_) + " of them differ") << '\n';
  return different_ == 0;
}

}  // namespace recorder
