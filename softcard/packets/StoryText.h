#ifndef SOFTCARD_PACKETS_STORY_TEXT_H
#define SOFTCARD_PACKETS_STORY_TEXT_H

#include <string>
#include <vector>

#include "softcard/packets/Story.h"
#include "softcard/tables/Ports.h"

namespace softcard {

/// One line: "route 192.0.2.0/24: vrf=1 destination=20", "| mpls label=100 exp=0 s=1 ttl=255", "dropped: ttl: its TTL
/// is 1".
std::string StepText(const Step& step, const Ports& ports);

/// Keeps the lines.
class StoryLines : public Story {
 public:
  explicit StoryLines(const Ports& ports) : ports_(ports) {}

  void Tell(const Step& step) override { lines_.push_back(StepText(step, ports_)); }
  const std::vector<std::string>& lines() const { return lines_; }

 private:
  const Ports& ports_;
  std::vector<std::string> lines_;
};

}  // namespace softcard

#endif
