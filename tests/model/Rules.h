#ifndef TESTS_MODEL_RULES_H
#define TESTS_MODEL_RULES_H

#include <string>
#include <string_view>
#include <vector>

namespace model {

/// What every operation does, as tables of lines; README.md says how to read them.
extern const char* const kVlanRules;
extern const char* const kHostRules;
extern const char* const kMplsRules;
extern const char* const kTunnelRules;

/// A number, or the slot of a variable that holds one.
struct Operand {
  bool literal;
  int value;
};

struct Condition {
  Operand left;
  std::string comparison;
  Operand right;
};

/// A stretch of a log text, and what is printed after it: `kind` empty and `what` a number for {what}.
struct Segment {
  std::string text;
  std::string kind;
  Operand what;
};

enum class Verb {
  kLog,
  kCall,
  kSet,
  kAdd,
  kRun,
  kEach,
  kFind,
  kObject,
  kStore,
  kRewrite,
  kForget,
  kNotify,
  kThrow,
  kEnd
};

struct Step {
  Verb verb;
  int target = -1;   ///< the slot that gets the result; -1: none
  int subject = -1;  ///< signature of a call, table of run and each, object or record of a lookup
  std::vector<Operand> operands;
  std::vector<Segment> text;  ///< of a log line or exception, after its level
};

enum class Failure { kNever, kNegative, kNonzero, kFalse, kMissing };

struct Line {
  std::string text;
  std::vector<Condition> when;
  Step step;
  Failure failure = Failure::kNever;
  std::vector<Step> then;
  mutable bool taken = false, failed = false;  ///< for telling which lines no request has reached
};

using Table = std::vector<Line>;

/// The tables, read once. A mistake in them throws std::logic_error.
class Rules {
 public:
  static const Rules& Get();

  const Table& table(int index) const { return tables_[index]; }
  int TableIndex(std::string_view name) const;
  /// Slots of an object or record are neighbours, in the order of `kObjectFields` or `kRecordFields`.
  int Slot(std::string_view name) const;
  /// The lines, table by table, that were never taken, or never failed though they say what a failure brings.
  std::vector<std::string> Unreached() const;
  int slots() const { return static_cast<int>(slot_names_.size()); }

 private:
  Rules();
  Line ParseLine(std::string_view line);
  Step ParseStep(std::string_view text);
  Condition ParseCondition(std::string_view text);
  Operand ParseOperand(std::string_view word);
  std::vector<Segment> ParseText(std::string_view text);
  int Declare(std::string_view name);

  std::vector<std::string> table_names_;
  std::vector<Table> tables_;
  std::vector<std::string> slot_names_;
};

inline const std::vector<std::string> kObjectFields = {"found", "id", "vlan", "vrf", "mac", "mtu", "flags", "tunnel"};
inline const std::vector<std::string> kRecordFields = {"found", "intf", "egress"};
inline const std::vector<std::string> kObjects = {"base", "own", "target"};
inline const std::vector<std::string> kRecords = {"record", "parent"};

}  // namespace model

#endif
