#ifndef CONSOLE_CAPTURE_FILES_H
#define CONSOLE_CAPTURE_FILES_H

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "softcard/packets/Frame.h"

struct pcap;
struct pcap_dumper;

namespace console {

/// What ports see, in capture files, DIRECTORY/eth1.pcap and so on. Those that an earlier run left there go.
class CaptureFiles {
 public:
  /// Makes the directory when there is none. Throws std::runtime_error when no file can be written there.
  explicit CaptureFiles(std::string directory);
  ~CaptureFiles();
  CaptureFiles(const CaptureFiles&) = delete;
  CaptureFiles& operator=(const CaptureFiles&) = delete;

  /// At a time in nanoseconds. The file has the frame then; throws std::runtime_error when it cannot be written, and
  /// has left the file with the frames before.
  void Write(const std::string& port, std::uint64_t time, softcard::View frame);

 private:
  struct Close {
    void operator()(pcap* capture) const;
    void operator()(pcap_dumper* file) const;
  };

  using File = std::unique_ptr<pcap_dumper, Close>;

  File Open(const std::string& path);

  const std::string directory_;
  const std::unique_ptr<pcap, Close> capture_;
  std::map<std::string, File> files_;  ///< by port
};

}  // namespace console

#endif
