#include <sstream>

#include "calls/Json.h"
#include "console/SweepPrinters.h"

namespace console {

void SweepReport::Swept(const diagnosis::SweptRequest& request) {
  if (alike_.Repeats(request)) {
    ++rounds_alike_;
    last_ = request.text;
    return;
  }
  EndAlike();
  std::ostringstream json;
  SweepJson(json).Swept(request);
  requests_ += (requests_.empty() ? "\n{\"swept\": " : ",\n{\"swept\": ") + json.str();
}

void SweepReport::EndAlike() {
  if (requests_.empty()) return;
  requests_ += ", \"alike\": " + std::to_string(rounds_alike_) + ", \"last\": " + calls::JsonString(last_) + '}';
  rounds_alike_ = 0;
  last_.clear();
}

void SweepReport::Ended(const std::string& file, const SweepTally& tally) {
  EndAlike();
  std::ostringstream json;
  SweepJson(json).Ended(file, tally);
  tally_ = json.str();
}

std::string SweepReport::Json() const { return "{\"requests\": [" + requests_ + "],\n\"tally\": " + tally_ + '}'; }

}  // namespace console
