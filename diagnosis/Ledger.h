#ifndef DIAGNOSIS_LEDGER_H
#define DIAGNOSIS_LEDGER_H

#include <cstdint>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "diagnosis/Touches.h"
#include "scenario/Step.h"

namespace diagnosis {

/// Remembers of a run which request touched which row last, by the platform calls that it made, and which operation
/// made each destination. Learns a run's steps as they are taken and forgets them when another run begins.
class Ledger : public scenario::Observer {
 public:
  Ledger() = default;
  /// Forgets requests of no use when there are more than so many of them.
  explicit Ledger(std::size_t most_idle) : most_idle_(most_idle), most_requests_(most_idle) {}
  Ledger(Ledger&&) = default;
  Ledger& operator=(Ledger&&) = default;

  struct Request {
    std::string place;    ///< "FILE:LINE"; "the module's start"
    std::string text;     ///< empty for that start
    std::string refused;  ///< the platform calls that were refused, "FUNCTION = RESULT, ..."; empty when none was
  };

  void Took(const scenario::Step& step) override;
  void Ended(const std::string& file, const scenario::Tally& tally) override;

  /// What installed the destination, as far as the run has shown.
  Maker MakerOf(int destination) const;
  /// The last request that wrote the row of this key, or was refused to; nothing when none has. Later ones are greater.
  std::optional<std::size_t> LastTouching(std::string_view table, std::int64_t key) const;
  Request RequestOf(std::size_t number) const;
  /// Whether a request that failed left other values in the row than the last one that succeeded.
  bool IsHalfWritten(std::string_view table, std::int64_t key) const;

 private:
  // A card may have a million destinations, so what is kept of each is small: texts are made when they are asked for.
  struct Source {
    std::string file;
    unsigned line;
    std::string text;
    scenario::Counters counters;  ///< as in the first round
  };
  struct Made {
    const Source* source;
    std::uint32_t rounds;  ///< where the values of its loops' counters begin in rounds_
  };
  struct Touch {
    std::uint32_t request : 30;  ///< a scenario has at most 4,000,000 lines, and a card fewer rows
    Maker maker : 2;             ///< of a destination
    std::uint32_t written;       ///< a hash of the values; 0: none, or taken away
    std::uint32_t settled;       ///< the same, when a request had last succeeded
  };
  using Touches = std::unordered_map<std::int32_t, Touch>;  ///< by key

  const Source* SourceOf(const scenario::Step& step);
  /// Forgets the requests that no row was touched by last, of which a card that lives on has more and more.
  void Forget();
  /// That the request under way touches it.
  void Mark(Touch& touch) const { touch.request = static_cast<std::uint32_t>(requests_.size() - 1) & 0x3FFFFFFFU; }
  Touch& TouchOf(std::string_view table, std::int64_t key);
  const Touch* FindTouch(std::string_view table, std::int64_t key) const;
  void Follow(const calls::Call& call);
  /// What lies beside an interface stays where it was when the interface moves to another VLAN.
  void FollowVlan(const calls::Call& call, int intf);
  void Follow(const calls::LogLine& line, bool failed);

  std::vector<Made> requests_;
  std::vector<std::int64_t> rounds_;
  std::list<Source> sources_;
  /// By where the line's text is in its scenario; when that is gone another line's may be there.
  std::map<const char*, const Source*> source_at_;
  std::map<std::size_t, std::string> refused_;             ///< by request
  std::map<std::string, Touches, std::less<>> touches_;    ///< by table
  std::unordered_map<std::int32_t, std::uint16_t> vlans_;  ///< by interface
  std::vector<Touch*> touched_;                            ///< by the request under way
  std::size_t most_idle_ = 100'000;
  std::size_t most_requests_ = most_idle_;  ///< before those of no use are forgotten
  bool ended_ = false;
};

}  // namespace diagnosis

#endif
