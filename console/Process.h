#ifndef CONSOLE_PROCESS_H
#define CONSOLE_PROCESS_H

#include <functional>
#include <string>

namespace console {

/// How a process of its own ended.
struct Ending {
  std::string report;  ///< what the work handed back
  std::string crash;   ///< "crashed: Segmentation fault"; empty when it did not
};

/// Does the work in a process of its own, which has this one's output, and waits for it. Throws std::system_error when
/// there can be none.
Ending InItsOwnProcess(const std::function<std::string()>& work);

}  // namespace console

#endif
