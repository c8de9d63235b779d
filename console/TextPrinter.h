#ifndef CONSOLE_TEXT_PRINTER_H
#define CONSOLE_TEXT_PRINTER_H

#include <iosfwd>
#include <string>

#include "scenario/Step.h"

namespace console {

enum class Detail {
  kFailures,  ///< expectations that do not hold
  kRequests,  ///< a line for each request, or for a row of alike ones
  kCalls,     ///< calls and log lines of each request
};

/// Writes what a run has to tell, for people.
class TextPrinter : public scenario::Observer {
 public:
  TextPrinter(std::ostream& out, Detail detail, bool colour) : out_(out), detail_(detail), colour_(colour) {}

  void Took(const scenario::Step& step) override;
  void Ended(const std::string& file, const scenario::Tally& tally) override;

 private:
  /// Requests of one kind and with one result that followed each other.
  struct Row {
    std::string name;
    std::string result;
    std::string first;
    std::string last;
    unsigned long count = 0;
  };

  void Print(const scenario::Step& step, const scenario::Trace& trace);
  void Print(const scenario::Step& step, const scenario::Shown& shown);
  void Print(const scenario::Step& step, const scenario::PlannedFault&) { PrintPlan(step); }
  void Print(const scenario::Step& step, const scenario::ClearedFaults&) { PrintPlan(step); }
  void Print(const scenario::Step& step, const scenario::Said& said);
  void Print(const scenario::Step& step, const scenario::Checked& checked);

  void PrintStart(const scenario::Trace& trace);
  void PrintPacket(const scenario::Step& step, const scenario::Trace& trace);
  void PrintRequest(const scenario::Step& step, const scenario::Trace& trace);
  void PrintPlan(const scenario::Step& step);
  void PrintLines(const scenario::Trace& trace);

  std::string Paint(const char* colour, const std::string& text) const;
  std::string PaintResult(const scenario::RequestResult& result) const;
  void PrintRow();
  void Fold(const std::string& text, const scenario::RequestResult& result);

  std::ostream& out_;
  Detail detail_;
  bool colour_;
  Row row_;
};

}  // namespace console

#endif
