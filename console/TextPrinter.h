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

/// Whether standard output gets colours when the user asked for "always", "never" or "auto".
bool WantsColour(const std::string& choice);

/// "1 request", "2 requests".
std::string Counted(unsigned long count, const std::string& noun);

/// Writes what a run has to tell, for people.
class TextPrinter : public scenario::Observer {
 public:
  struct Options {
    Detail detail = Detail::kCalls;
    bool colour = false;
    unsigned long max_failures = 0;  ///< of more only the number is told; 0: all are
    bool frames = false;             ///< packets with the bytes that leave
  };

  TextPrinter(std::ostream& out, const Options& options) : out_(out), options_(options) {}

  void Took(const scenario::Step& step) override;
  void Ended(const std::string& file, const scenario::Tally& tally) override;

 private:
  /// Requests of one line that followed each other in rounds of the loop around it, returned 0, and whose ids are a
  /// range.
  struct Row {
    std::string file;
    unsigned line = 0;
    scenario::Counters outer;  ///< rounds of the loops around that loop
    std::string text;          ///< of the first one
    std::string result;
    long long first = 0;
    long long step = 0;
    long long last = 0;
    unsigned long count = 0;
  };

  void Print(const scenario::Step& step, const scenario::Trace& trace);
  void Print(const scenario::Step& step, const scenario::Shown& shown);
  void Print(const scenario::Step& step, const scenario::ShownChain& chain);
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
  void Fold(const scenario::Step& step, const scenario::Trace& trace);
  bool ContinuesRow(const Row& next) const;

  std::ostream& out_;
  const Options options_;
  unsigned long failures_ = 0;
  Row row_;
};

}  // namespace console

#endif
