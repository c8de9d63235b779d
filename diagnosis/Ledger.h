#ifndef DIAGNOSIS_LEDGER_H
#define DIAGNOSIS_LEDGER_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "scenario/Step.h"

namespace diagnosis {

/// Remembers of a run which request touched which row last, by the platform calls that it made, and which operation
/// made each destination. Learns a run's steps as they are taken and forgets them when another run begins.
class Ledger : public scenario::Observer {
 public:
  enum class Maker { kUnknown, kVlan, kHost, kMpls };

  struct Request {
    unsigned line;
    std::string text;
    std::string refused;  ///< the platform calls that were refused, "FUNCTION = RESULT, ..."; empty when none was
  };

  void Took(const scenario::Step& step) override;
  void Ended(const std::string& file, const scenario::Tally& tally) override;

  /// What installed the destination, as far as the run has shown.
  Maker MakerOf(int destination) const;
  /// The last request that wrote the row of this key, or was refused to; null when none has. Later ones are greater.
  const std::size_t* LastTouching(std::string_view table, std::int64_t key) const;
  Request RequestOf(std::size_t number) const;
  /// Whether a request that failed left other values in the row than the last one that succeeded.
  bool IsHalfWritten(std::string_view table, std::int64_t key) const;

 private:
  // A card may have a million destinations, so what is kept of each is small: texts are made when they are asked for.
  struct Made {
    unsigned line;
    bool failed;
    const char* source;  ///< where the line's text was in its scenario: its place in sources_
    std::size_t rounds;  ///< where the values of its loops' counters begin in rounds_
  };
  struct Source {
    std::string text;
    scenario::Counters counters;  ///< as in the first round
  };
  struct Touch {
    std::size_t request = 0;
    unsigned written = 0;  ///< a hash of the values; 0: none, or taken away
    unsigned settled = 0;  ///< the same, when a request had last succeeded
    Maker maker = Maker::kUnknown;
  };

  Touch& TouchOf(std::string_view table, std::int64_t key);
  const Touch* FindTouch(std::string_view table, std::int64_t key) const;
  void Follow(const calls::Call& call);
  /// What lies beside an interface stays where it was when the interface moves to another VLAN.
  void FollowVlan(const calls::Call& call, int intf);
  void Follow(const calls::LogLine& line, bool failed);

  std::vector<Made> requests_;
  std::vector<std::int64_t> rounds_;
  std::map<const char*, Source> sources_;
  std::map<std::size_t, std::string> refused_;                                           ///< by request
  std::map<std::string, std::unordered_map<std::int64_t, Touch>, std::less<>> touches_;  ///< by table and key
  std::map<int, std::int64_t> vlans_;                                                    ///< by interface
  std::vector<Touch*> touched_;                                                          ///< by the request under way
  bool ended_ = false;
};

}  // namespace diagnosis

#endif
