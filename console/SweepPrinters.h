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

/// For people: a matrix for each request, but one for the rounds of a loop that are alike.
class SweepText : public SweepPrinter {
 public:
  explicit SweepText(std::ostream& out) : out_(out) {}

  void Swept(const diagnosis::SweptRequest& request) override;
  void Ended(const std::string& file, const SweepTally& tally) override;

 private:
  void EndAlike();

  std::ostream& out_;
  std::string shape_;        ///< the last matrix without its numbers
  unsigned long alike_ = 0;  ///< requests of the same shape that followed it
  std::string last_;         ///< of these
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

}  // namespace console

#endif
