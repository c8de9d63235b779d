#ifndef RECORDER_REPLAY_REPORT_H
#define RECORDER_REPLAY_REPORT_H

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "recorder/Reader.h"

namespace recorder {

/// What a replay prints.
class ReplayReport {
 public:
  explicit ReplayReport(std::ostream& out) : out_(out) {}

  /// A request that was made; `now` is what it did and `recorded` what it did then, a line each.
  void Tell(const Step& step, const std::vector<std::string>& recorded, std::vector<std::string> now);
  void Tell(const Remark& remark);
  /// The last line; whether there were no differences.
  bool End();

 private:
  std::ostream& out_;
  std::size_t requests_ = 0;
  std::size_t different_ = 0;
};

}  // namespace recorder

#endif
