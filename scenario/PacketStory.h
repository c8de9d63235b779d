#ifndef SCENARIO_PACKET_STORY_H
#define SCENARIO_PACKET_STORY_H

#include <vector>

#include "scenario/Run.h"
#include "softcard/packets/Story.h"

namespace scenario {

/// Keeps a packet's story as lines of a trace: the rows that decided, the frame layer by layer, the end, and what left
/// in hexadecimal.
class PacketStory : public softcard::Story {
 public:
  explicit PacketStory(const Run& run) : run_(run) {}

  void Tell(const softcard::Step& step) override;
  std::vector<TraceLine>& lines() { return lines_; }

 private:
  void TellOf(const softcard::Row& row);

  const Run& run_;
  std::vector<TraceLine> lines_;
  std::vector<std::size_t> parts_;  ///< where parts of the frame end that have been told: addresses, types, labels
};

}  // namespace scenario

#endif
