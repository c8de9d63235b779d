#ifndef CONSOLE_PROCESSES_H
#define CONSOLE_PROCESSES_H

#include <deque>
#include <functional>
#include <string>

#include "diagnosis/Branches.h"

namespace console {

using diagnosis::Ending;

/// Processes of this program's own, which have its output. Each operation throws std::system_error when the system has
/// no room for another.
class Processes : public diagnosis::Branches {
 public:
  /// As many as there are cores. One that takes longer than `seconds` is ended; 0: none is.
  explicit Processes(unsigned seconds = 0) : seconds_(seconds) {}

  unsigned most() const override;
  bool Begin() override;
  [[noreturn]] void End(const std::string& report) override;
  Ending Next() override;

 private:
  struct Process {
    int id;
    int report;  ///< the end of a pipe
  };

  const unsigned seconds_;
  std::deque<Process> begun_;
  int report_to_ = -1;  ///< in a branch
};

/// Does the work in a process of its own and waits for it.
Ending InItsOwnProcess(const std::function<std::string()>& work);

}  // namespace console

#endif
