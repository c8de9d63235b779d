#ifndef DIAGNOSIS_LEDGER_H
#define DIAGNOSIS_LEDGER_H

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "scenario/Step.h"
#include "softcard/Card.h"

namespace diagnosis {

/// Remembers of a run which request touched which row last, by the platform calls that it made, and which operation
/// made each destination. Learns a run's steps as they are taken and forgets them when another run begins.
class Ledger : public scenario::Observer {
 public:
  enum class Maker { kUnknown, kVlan, kHost, kMpls };

  struct Request {
    unsigned line;
    std::string text;
    bool failed;          ///< a negative result, or it threw
    std::string refused;  ///< the platform calls that were refused, "FUNCTION = RESULT, ..."; empty when none was
  };

  void Took(const scenario::Step& step) override;
  void Ended(const std::string& file, const scenario::Tally& tally) override;

  /// What installed the destination, as far as the run has shown.
  Maker MakerOf(int destination) const;
  /// The last request that wrote the row of this key, or was refused to; null when none has.
  const Request* LastTouching(const softcard::TableDescription* table, std::int64_t key) const;
  /// Whether a request that failed left other values in the row than the last one that succeeded.
  bool IsHalfWritten(const softcard::TableDescription* table, std::int64_t key) const;

 private:
  using Key = std::pair<const softcard::TableDescription*, std::int64_t>;
  struct Touch {
    std::size_t request;
    std::size_t written = 0;  ///< a hash of the values; 0: none, or taken away
    std::size_t settled = 0;  ///< the same, when a request had last succeeded
  };

  void Follow(const calls::Call& call);
  /// What lies beside an interface stays where it was when the interface moves to another VLAN.
  void FollowVlan(const calls::Call& call, int intf);
  void Follow(const calls::LogLine& line, bool failed);

  std::vector<Request> requests_;
  std::map<Key, Touch> touches_;
  std::map<int, Maker> makers_;
  std::map<int, std::int64_t> vlans_;  ///< by interface
  std::vector<Key> touched_;           ///< by the request under way
  bool ended_ = false;
};

/// The table of this name.
const softcard::TableDescription* TableOf(std::string_view name);

}  // namespace diagnosis

#endif
