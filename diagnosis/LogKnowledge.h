#ifndef DIAGNOSIS_LOG_KNOWLEDGE_H
#define DIAGNOSIS_LOG_KNOWLEDGE_H

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "diagnosis/Audit.h"
#include "diagnosis/LogSituations.h"
#include "diagnosis/LogText.h"

namespace diagnosis {

/// A request that was made to find out what it logs.
struct LoggedRun {
  std::vector<std::string> titles;           ///< of the situations in which it went just so
  std::string request;                       ///< "install-mpls"
  const calls::Function* refused = nullptr;  ///< null: no call was
  unsigned nth = 0;                          ///< of this function's calls in the request, from 1
  std::vector<int> statuses;                 ///< that it returned instead, with the same outcome
  std::string result;                        ///< of the request
  bool harmless = false;                     ///< result and findings are as when nothing is refused
  std::vector<Finding> findings;             ///< of the audit afterwards
  std::vector<LogValues> values;             ///< of its lines
  std::optional<std::pair<std::size_t, std::size_t>> status_place;  ///< the line and the hole that show the status
};

/// What the module logs in every situation, with nothing and with each platform call refused: a tree of log lines, in
/// which each run is a way from the root. Made by running the module.
class LogKnowledge {
 public:
  struct Edge {
    std::size_t text;
    unsigned same;  ///< the holes, a bit each, that are filled as the first one of the first line is: with the id
    std::size_t node;
  };
  struct Node {
    std::size_t parent;
    std::size_t text;  ///< of the line that leads here
    unsigned same;
    std::vector<Edge> edges;
    std::vector<LoggedRun> runs;  ///< whose last line this is
  };

  static constexpr std::size_t kRoot = 0;

  /// Everything is tried on this card.
  LogKnowledge(const scenario::Language& language, softcard::Card& card);

  const LogTexts& texts() const { return texts_; }
  const std::vector<Node>& nodes() const { return nodes_; }
  /// Where this line leads from a node; null when it leads nowhere. `first` fills the first hole of the first line.
  const Edge* Follow(std::size_t node, const LogTexts::Found& line, const std::string& first) const;

 private:
  void Learn(const LogSituation& situation);
  /// Adds the lines of an attempt from the `from`-th on as a way to `run`.
  void Add(const std::vector<std::pair<std::size_t, LogValues>>& lines, std::size_t from, LoggedRun run);

  const scenario::Language& language_;
  softcard::Card& card_;
  Ledger ledger_;
  LogTexts texts_;
  std::vector<Node> nodes_{{kRoot, 0, 0, {}, {}}};
};

}  // namespace diagnosis

#endif
