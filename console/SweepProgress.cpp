#include <unistd.h>

#include <iostream>

#include "console/Processes.h"
#include "console/SweepPrinters.h"

namespace console {
namespace {

/// On a terminal, a line that tells where the sweep is.
class Progress {
 public:
  void Show(unsigned line, const SweepTally& tally) const {
    if (!on_terminal_) return;
    std::cerr << "\r\033[Kline " << line << ", " << tally.requests << " requests, " << tally.refusals << " refusals"
              << std::flush;
  }
  void Hide() const {
    if (on_terminal_) std::cerr << "\r\033[K" << std::flush;
  }

 private:
  const bool on_terminal_ = isatty(STDERR_FILENO) != 0;
};

}  // namespace

SweepTally SweepWithProgress(const scenario::Scenario& scenario, softcard::Card& card, const diagnosis::Ledger& ledger,
                             const diagnosis::SweepOptions& options, SweepPrinter& printer) {
  constexpr unsigned kMostSeconds = 60;  // no request takes as long
  const Progress progress;
  SweepTally tally;
  Processes processes(kMostSeconds);
  diagnosis::Sweep(scenario, card, ledger, options, processes, [&](const diagnosis::SweptRequest& request) {
    tally.Add(request);
    progress.Hide();
    printer.Swept(request);
    progress.Show(request.line, tally);
  });
  progress.Hide();
  printer.Ended(scenario.file, tally);
  return tally;
}

}  // namespace console
