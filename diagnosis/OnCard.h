#ifndef DIAGNOSIS_ON_CARD_H
#define DIAGNOSIS_ON_CARD_H

#include <set>
#include <string>
#include <vector>

#include "diagnosis/CardIds.h"
#include "recorder/Reader.h"
#include "scenario/Performer.h"
#include "softcard/Card.h"

namespace diagnosis {

/// Makes recorded requests on the software card, which is told to refuse the calls that were refused. What is compared
/// is what a transcript shows: calls, log lines, notifications and results, but not what the module only looks at.
/// Interfaces and egress objects are told by their recorded ids, and objects' texts, which each platform has its own
/// of, as "*".
class OnCard {
 public:
  /// Empties the card; the module has not been started yet.
  OnCard(softcard::Card& card, const softcard::CardDescription& description);

  struct Made {
    std::vector<std::string> recorded;  ///< a line each, indented as in a recording
    std::vector<std::string> now;
    std::vector<std::string> other_ids;  ///< that the card chose in it: see CardIds
  };
  /// Throws BadRecording for what no card can be told to do.
  Made Make(const recorder::Step& step);
  /// The same for a destination that is not on the card.
  void Apply(const recorder::Standing& standing);

 private:
  /// A step that is being made.
  struct Frame {
    const recorder::Step* step;
    std::size_t next_notification = 0;
  };

  scenario::RequestResult Perform(const recorder::Step& step);
  void Register(const recorder::Registration& registration);
  void Notified(const std::string& client, int destination_id, unsigned port);
  std::vector<std::string> TellNow(scenario::Trace trace, std::vector<std::string>* recorded);

  softcard::Card& card_;
  const softcard::Record record_;
  scenario::Performer performer_;
  CardIds ids_;
  std::set<std::string> clients_;
  std::vector<Frame> frames_;
  bool started_ = false;
};

}  // namespace diagnosis

#endif
