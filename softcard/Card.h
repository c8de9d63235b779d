#ifndef SOFTCARD_CARD_H
#define SOFTCARD_CARD_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "hal/HalBcmCommon.h"
#include "softcard/CallLog.h"
#include "softcard/CardDescription.h"
#include "softcard/FaultPlan.h"
#include "softcard/LimId.h"
#include "softcard/Tables.h"
#include "softcard/packets/Counters.h"
#include "softcard/tables/Row.h"

namespace softcard {

/// The software line card: everything the platform's functions act on.
class Card {
 public:
  /// The one that this process runs on. The platform's functions and the program's outermost room ask for it;
  /// everything between is handed it.
  static Card& Get();

  /// An empty card of this description: tables, call log and fault plan are emptied, the port tables filled, the
  /// records of installed destinations freed. Singletons and managers that were handed out stay valid.
  void Reset(const CardDescription& description = {});

  const CardDescription& description() const { return description_; }
  CallLog& log() { return log_; }
  FaultPlan& faults() { return faults_; }
  /// What the chip holds; a copy is a snapshot.
  Tables& tables() { return tables_; }
  const Tables& tables() const { return tables_; }
  /// Of the packets that whoever forwards them has counted.
  Counters& counters() { return counters_; }
  const Counters& counters() const { return counters_; }
  /// What `HalBcmCommon::GetInstance()` gives, without the call being seen.
  HalBcmCommon& common() { return common_; }
  const HalBcmCommon& common() const { return common_; }

  /// The tables in the order in which they are shown: "intfs", "egresses", "initiators", "stations", "associations",
  /// "vrfs", "protocol", "switch", "ports", "lags", "destinations", "routes", "labels", "attachments", "members",
  /// "counters".
  static std::vector<const TableDescription*> TableDescriptions();
  static std::vector<std::string> TableNames();
  /// A table's rows in the order of their keys. Throws std::invalid_argument for a name that is no table's.
  std::vector<Row> Rows(std::string_view table) const;
  /// How many there are, without a walk through them.
  std::size_t RowCount(std::string_view table) const;

  /// Whether the card itself looks at its objects: platform functions then neither consult the fault plan nor write the
  /// call log.
  bool is_looking() const { return looking_; }

 private:
  friend class Unseen;

  Card() { Reset(); }

  CardDescription description_;
  CallLog log_;
  FaultPlan faults_;
  Tables tables_{description_};
  Counters counters_;
  HalBcmCommon common_;
  bool looking_ = false;
};

/// While one lives, the card looks at its own objects.
class Unseen {
 public:
  explicit Unseen(Card& card) : card_(card), outer_(card.looking_) { card.looking_ = true; }
  ~Unseen() { card_.looking_ = outer_; }
  Unseen(const Unseen&) = delete;
  Unseen& operator=(const Unseen&) = delete;

 private:
  Card& card_;
  const bool outer_;
};

}  // namespace softcard

#endif
