#ifndef CONSOLE_RECORDING_H
#define CONSOLE_RECORDING_H

#include <string>
#include <vector>

namespace console {

/// Has the module's calls recorded into a file from its first one on. False, and a message on standard error, when the
/// file cannot be written.
bool RecordInto(const std::string& path);

/// Recordings that are older than a start that may fail: unless it is told that the start has succeeded, they are again
/// as they were at its end, and what was recorded meanwhile is gone.
class OlderRecordings {
 public:
  OlderRecordings() = default;
  ~OlderRecordings();
  OlderRecordings(const OlderRecordings&) = delete;
  OlderRecordings& operator=(const OlderRecordings&) = delete;

  /// `path` is the new recording's. Throws std::runtime_error with the reason and the remedy when they cannot be kept.
  void Keep(const std::string& path);
  void StartSucceeded();

 private:
  std::vector<std::string> paths_;  ///< that the recorder may write
};

}  // namespace console

#endif
