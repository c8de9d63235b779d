#ifndef DIAGNOSIS_CARD_IDS_H
#define DIAGNOSIS_CARD_IDS_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "recorder/Reader.h"

namespace diagnosis {

/// Which ids of interfaces and egress objects the card chose in the place of the recorded ones.
class CardIds {
 public:
  /// A request begins, of which these calls are recorded. They live until the next one.
  void Begin(const std::vector<const calls::Call*>& recorded);
  /// Puts the recorded ids in the place of the card's own, in the order in which the card saw the events. An id that
  /// stands for no recorded one stays.
  void Translate(calls::Event* event);
  /// "intf 7 of the recording is intf 2 on the card", for each id that is another since they were last taken.
  std::vector<std::string> TakeOthers();

 private:
  using Ids = std::map<std::int64_t, std::int64_t>;

  void Learn(calls::Call* call);
  const calls::Call* TakeRecorded(const calls::Call& call);

  std::map<std::string, Ids> recorded_;  ///< by kind and the card's id
  std::map<std::string, Ids> told_;      ///< by kind and the recorded id
  std::vector<const calls::Call*> waiting_;
  std::vector<std::string> others_;
};

}  // namespace diagnosis

#endif
