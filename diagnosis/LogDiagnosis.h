#ifndef DIAGNOSIS_LOG_DIAGNOSIS_H
#define DIAGNOSIS_LOG_DIAGNOSIS_H

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "diagnosis/LogKnowledge.h"

namespace diagnosis {

/// What may have happened in a request that logged such lines.
struct LogCause {
  std::string request;              ///< "install-mpls"
  std::string call;                 ///< the platform call that was refused, "IntfManager::CreateIntf"; empty: none was
  unsigned nth = 0;                 ///< of this function's calls in the request, from 1
  std::string status;               ///< "-6 (Table full)"; "negative" where the log does not tell which
  std::string result;               ///< of the request; "the status" where it returns what the call did
  bool harmless;                    ///< the request did all the same what it has to
  std::vector<Finding> left;        ///< with the log's own ids, and "?" for those that it does not tell
  std::vector<std::string> titles;  ///< of the operations, in the ways in which this is so
};

/// A request as a log tells of it.
struct LogRequest {
  unsigned long first_line = 0;  ///< of the log, from 1
  unsigned long last_line = 0;
  std::string id;                ///< of the destination; empty when the log does not tell it
  std::vector<LogCause> causes;  ///< all that are possible; empty: no refusal of a single call writes these lines
  bool begins_before = false;    ///< the log's first line is not the request's
  bool may_go_on = false;        ///< the log's last line may not be the request's
  std::size_t lines_alike = 0;   ///< the same number for requests that logged the same, but for what fills the holes

  /// Whether it may be that no call was refused and that the request returned 0.
  bool MayHaveSucceeded() const;
};

/// Reads a log line by line and tells of each request in it when its last line is known. Keeps no more than the lines
/// of one request.
class LogDiagnosis {
 public:
  LogDiagnosis(const LogKnowledge& knowledge, std::function<void(const LogRequest&)> tell)
      : knowledge_(knowledge), tell_(std::move(tell)) {}

  void Take(std::string_view line);
  /// There are no more lines.
  void End();

  unsigned long lines() const { return lines_; }
  /// Those that are the module's.
  unsigned long module_lines() const { return module_lines_; }
  /// Those of the module that belong to no request that is known.
  unsigned long stray_lines() const { return stray_lines_; }

 private:
  struct UnderWay {
    std::size_t node;
    unsigned long first_line;
    unsigned long last_line;
    std::string first;  ///< what fills the first hole of the first line
    std::vector<LogValues> values;
    bool is_explained = true;
  };
  struct Cut {
    unsigned long line;
    std::vector<LogTexts::Found> found;
  };

  void Begin(const LogKnowledge::Edge& edge, const LogTexts::Found& line);
  bool GoesOn(const LogTexts::Found& line);
  void Finish(bool at_end);
  void FinishBeginning(bool at_end);
  /// What the lines before the first whole request are, as a way to this node; nothing when they are none.
  struct Beginning {
    std::vector<LogValues> values;
    std::string id;
  };
  std::optional<Beginning> BeginningAt(std::size_t node) const;

  const LogKnowledge& knowledge_;
  const std::function<void(const LogRequest&)> tell_;
  std::optional<UnderWay> under_way_;
  std::deque<Cut> beginning_;  ///< lines before the first one that a request begins with
  bool has_begun_ = false;
  unsigned long lines_ = 0;
  unsigned long module_lines_ = 0;
  unsigned long stray_lines_ = 0;
};

}  // namespace diagnosis

#endif
