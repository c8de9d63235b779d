#ifndef CONSOLE_SWEEP_PRINTERS_H
#define CONSOLE_SWEEP_PRINTERS_H

#include <iosfwd>
#include <string>

#include "diagnosis/Sweep.h"

namespace console {

/// How many there were in a sweep.
struct SweepTally {
  unsigned long requests = 0;
  unsigned long refusals = 0;
  unsigned long leave = 0;  ///< refusals after which the audit finds something
  unsigned long fail_again = 0;
  unsigned long cannot_be_destroyed = 0;
  unsigned long crash = 0;

  void Add(const diagnosis::SweptRequest& request);
};

/// Is told of a sweep.
class SweepPrinter {
 public:
  virtual ~SweepPrinter() = default;
  virtual void Swept(const diagnosis::SweptRequest& request) = 0;
  virtual void Ended(const std::string& file, const SweepTally& tally) = 0;
};

/// Sweeps, with a line of progress where standard error is a terminal.
SweepTally SweepWithProgress(const scenario::Scenario& scenario, softcard::Card& card, const diagnosis::Ledger& ledger,
                             const diagnosis::SweepOptions& options, SweepPrinter& printer);

/// Tells which rounds of a loop have the same outcome but for their numbers.
class Alike {
 public:
  /// Whether the request is one more round of those before.
  bool Repeats(const diagnosis::SweptRequest& request);

 private:
  std::string shape_;  ///< of the last matrix, without its numbers
};

/// For people: a matrix for each request, but one for the rounds of a loop that are alike.
class SweepText : public SweepPrinter {
 public:
  explicit SweepText(std::ostream& out) : out_(out) {}

  void Swept(const diagnosis::SweptRequest& request) override;
  void Ended(const std::string& file, const SweepTally& tally) override;

 private:
  void EndAlike();

  std::ostream& out_;
  Alike alike_;
  unsigned long rounds_alike_ = 0;  ///< requests that followed the last matrix
  std::string last_;                ///< of these
};

/// For programs: a JSON object a line, as docs/sweep-1.schema.json describes them.
class SweepJson : public SweepPrinter {
 public:
  explicit SweepJson(std::ostream& out) : out_(out) {}

  void Swept(const diagnosis::SweptRequest& request) override;
  void Ended(const std::string& file, const SweepTally& tally) override;

 private:
  std::ostream& out_;
};

/// For a report: the JSON form's requests, once for rounds that are alike.
class SweepReport : public SweepPrinter {
 public:
  void Swept(const diagnosis::SweptRequest& request) override;
  void Ended(const std::string& file, const SweepTally& tally) override;

  /// {"requests": [{"swept": ..., "alike": 7, "last": "..."}], "tally": ...}, when the sweep has ended.
  std::string Json() const;

 private:
  void EndAlike();

  Alike alike_;
  unsigned long rounds_alike_ = 0;  ///< requests that followed the last one in requests_
  std::string last_;                ///< of these
  std::string requests_;
  std::string tally_;
};

}  // namespace console

#endif
