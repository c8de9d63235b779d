#ifndef CONSOLE_RECORDING_H
#define CONSOLE_RECORDING_H

#include <string>

namespace console {

/// Has the module's calls recorded into a file from its first one on. False, and a message on standard error, when the
/// file cannot be written.
bool RecordInto(const std::string& path);

}  // namespace console

#endif
