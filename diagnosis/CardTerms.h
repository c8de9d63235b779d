#ifndef DIAGNOSIS_CARD_TERMS_H
#define DIAGNOSIS_CARD_TERMS_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "recorder/Reader.h"
#include "softcard/CardDescription.h"

namespace diagnosis {

/// A recording in the software card's terms. What another platform's lim ids mean stands in what it answered when it
/// was asked of them: the card gets a lim id and a port of its own for each.
class CardTerms {
 public:
  /// Reads the recording to its end.
  explicit CardTerms(recorder::Reader* reader);

  /// A card with the recorded unit, slot and QoS map, and with ports enough.
  const softcard::CardDescription& description() const { return description_; }
  /// The same as a scenario's line: "card unit=5 ports=101"; empty for the built-in card.
  std::string CardLine() const;
  /// "on the card lim 0x6000001 is eth1, port 101 is port 1"; empty when all are the same.
  std::string Others() const;
  void Translate(recorder::Entry* entry) const;

 private:
  /// What the recorded platform answered about a lim id; nothing: it was not asked.
  struct Answers {
    std::optional<bool> is_ethernet{};
    std::optional<bool> is_lag{};
    std::optional<bool> is_cpu{};
    std::optional<unsigned> vlan{};
    bool has_type = false;
    std::optional<int> port{};  ///< of the table that it is looked up in
    std::optional<int> lag{};

    bool IsPort() const { return is_ethernet == true || is_lag == true || is_cpu == true; }
  };
  /// What a log line tells of the lim id that was asked for last.
  struct LimText {
    std::string name;
    unsigned type = 0;
    unsigned index = 0;
    bool translated = false;
  };

  void Learn(const recorder::Step& step);
  void Learn(const recorder::Standing& standing);
  void Learn(const calls::Call& call);
  bool Fits(std::uint32_t word, const Answers& answers) const;
  limid_t Choose(const Answers& answers);
  limid_t ChoosePort(limid_type_t type, const std::optional<int>& port, int first_port);
  limid_t OnCard(limid_t limid) const;
  void Translate(recorder::Step* step, LimText* lim) const;
  void Translate(recorder::Standing* standing) const;
  void Translate(calls::Call* call, LimText* lim) const;

  softcard::CardDescription description_;
  std::map<std::uint32_t, Answers> answers_;  ///< by the recorded word
  std::map<std::uint32_t, limid_t> limids_;   ///< of those that are others on the card
  std::map<int, int> ports_;                  ///< the same
  unsigned chosen_ = 0;                       ///< lim ids that nothing but their kind is known of
};

}  // namespace diagnosis

#endif
