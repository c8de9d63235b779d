#ifndef CONSOLE_CAPTURES_H
#define CONSOLE_CAPTURES_H

#include <memory>
#include <string>

#include "scenario/Step.h"

namespace console {

class CaptureFiles;

/// Writes what ports see of a run into capture files, DIRECTORY/eth1.pcap and so on, what comes in as well as what
/// leaves; those of an earlier run go. Times are the run's own, in nanoseconds: a frame leaves half a microsecond after
/// it came.
class Captures : public scenario::Observer {
 public:
  /// Makes the directory when there is none. Throws std::runtime_error when no file can be written there, or when this
  /// build has no libpcap.
  explicit Captures(const std::string& directory);
  ~Captures() override;

  /// Throws std::runtime_error when a file cannot be written.
  void Took(const scenario::Step& step) override;
  void Ended(const std::string&, const scenario::Tally&) override {}

 private:
  std::unique_ptr<CaptureFiles> files_;
};

}  // namespace console

#endif
