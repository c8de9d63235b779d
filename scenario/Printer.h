#ifndef SCENARIO_PRINTER_H
#define SCENARIO_PRINTER_H

#include <iosfwd>
#include <string>

#include "scenario/Expectations.h"
#include "scenario/Record.h"

namespace scenario {

enum class Detail {
  kFailures,  ///< expectations that do not hold
  kRequests,  ///< a line for each request, or for a row of alike ones
  kCalls,     ///< calls and log lines of each request
};

/// Writes what a run has to tell.
class Printer {
 public:
  Printer(std::ostream& out, Detail detail, bool colour) : out_(out), detail_(detail), colour_(colour) {}

  void Said(const std::string& text);
  void Started(const Record& record);
  void Requested(const std::string& text, const Record& record);
  void Sent(const std::string& text, const Record& record);
  void Showing(const std::string& text);
  void Shown(const std::string& table);
  void Planned(const std::string& text);
  void Held(const std::string& text);
  void Failed(const std::string& place, const std::string& text, const Failure& failure);
  void Summed(const std::string& text, bool good);

 private:
  /// Requests of one kind and with one result that followed each other.
  struct Row {
    std::string name;
    std::string result;
    std::string first;
    std::string last;
    unsigned long count = 0;
  };

  std::string Paint(const char* colour, const std::string& text) const;
  std::string PaintResult(const Outcome& outcome) const;
  void PrintTrace(const Record& record);
  void PrintRow();
  void Fold(const std::string& text, const Record& record);

  std::ostream& out_;
  Detail detail_;
  bool colour_;
  Row row_;
};

}  // namespace scenario

#endif
