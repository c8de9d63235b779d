#ifndef TESTS_MODEL_SUBJECT_H
#define TESTS_MODEL_SUBJECT_H

#include <deque>
#include <set>
#include <string>
#include <vector>

#include "softcard/Card.h"
#include "tests/model/Model.h"

namespace model {

/// Makes the request; the registration of a client is none.
int Call(const Request& request);

/// The module on a software card of its own, and the model beside it.
class Subject {
 public:
  explicit Subject(const softcard::CardDescription& description = {});
  /// Silences the clients that it has registered: their callbacks refer to it.
  ~Subject();
  Subject(const Subject&) = delete;
  Subject& operator=(const Subject&) = delete;

  /// Runs the request on the module, then has the model follow the transcript, and compares the registries. Throws
  /// Difference. Returns the transcript, which the
  /// next request takes back.
  const std::vector<std::string>& Run(const Request& request);

  /// Runs the request on the module alone.
  void Make(const Request& request);

  const Registry& registry() const { return model_.registry(); }

 private:
  void Execute(const Request& request);
  void Register(const Request& request);
  void Collect();
  void Note(const std::string& line);
  Facts Gather(const Request& request) const;
  void CompareRegistry() const;

  static std::set<std::string> names_;

  const softcard::Record record_{softcard::Card::Get().log(), softcard::CallLog::Recording::kAll};
  Model model_;
  std::vector<std::string> lines_;  ///< of the request under way
  std::deque<Facts> facts_;
  std::set<std::string> calling_;  ///< clients that are in their callback
};

}  // namespace model

#endif
