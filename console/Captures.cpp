#include "console/Captures.h"

#include <pcap/pcap.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <map>
#include <stdexcept>

namespace console {
namespace {

constexpr std::uint64_t kOnTheCard = 500;  // nanoseconds
constexpr std::uint64_t kSecond = 1'000'000'000;
constexpr int kMostBytes = 262144;  // of a frame, as capture files have it

[[noreturn]] void Fail(const std::string& path, const char* reason) {
  throw std::runtime_error("cannot write captures: " + path + ": " + reason +
                           "; name a directory that can be written and has room");
}

}  // namespace

class Captures::Files {
 public:
  explicit Files(std::string directory)
      : directory_(std::move(directory)),
        capture_(pcap_open_dead_with_tstamp_precision(DLT_EN10MB, kMostBytes, PCAP_TSTAMP_PRECISION_NANO)) {
    if (!capture_) Fail(directory_, "no memory");
    if (mkdir(directory_.c_str(), 0777) != 0 && errno != EEXIST) Fail(directory_, std::strerror(errno));
    // Whether files can be written is known once one has been.
    std::string probe = directory_ + "/softcard-XXXXXX";
    const int file = mkstemp(probe.data());
    if (file < 0) Fail(directory_, std::strerror(errno));
    close(file);
    unlink(probe.c_str());
  }

  void Write(const std::string& port, std::uint64_t time, const softcard::Bytes& frame) {
    auto& file = files_[port];
    const std::string path = directory_ + '/' + port + ".pcap";
    if (!file) file.reset(pcap_dump_open(capture_.get(), path.c_str()));
    if (!file) Fail(path, std::strerror(errno));
    pcap_pkthdr header{};
    header.ts.tv_sec = static_cast<time_t>(time / kSecond);
    header.ts.tv_usec = static_cast<suseconds_t>(time % kSecond);
    header.len = static_cast<bpf_u_int32>(frame.size());
    header.caplen = std::min<bpf_u_int32>(header.len, kMostBytes);
    pcap_dump(reinterpret_cast<u_char*>(file.get()), &header, frame.data());
  }

  void Flush() {
    for (const auto& [port, file] : files_) {
      const bool written = pcap_dump_flush(file.get()) == 0 && std::ferror(pcap_dump_file(file.get())) == 0;
      if (!written) Fail(directory_ + '/' + port + ".pcap", std::strerror(errno));
    }
  }

 private:
  struct Close {
    void operator()(pcap_t* capture) const { pcap_close(capture); }
    void operator()(pcap_dumper_t* file) const { pcap_dump_close(file); }
  };

  const std::string directory_;
  const std::unique_ptr<pcap_t, Close> capture_;
  std::map<std::string, std::unique_ptr<pcap_dumper_t, Close>> files_;  ///< by port
};

Captures::Captures(const std::string& directory) : files_(std::make_unique<Files>(directory)) {}

Captures::~Captures() = default;

void Captures::Took(const scenario::Step& step) {
  const auto* const trace = std::get_if<scenario::Trace>(&step.content);
  if (trace == nullptr || !trace->packet) return;
  const scenario::Forwarded& packet = *trace->packet;
  if (!packet.in_port.empty()) files_->Write(packet.in_port, packet.time, packet.in);
  // What the CPU gets of a packet that was routed elsewhere has no Ethernet header.
  const bool is_frame = packet.way.fate == softcard::Way::Fate::kSent || !packet.in_port.empty();
  if (!packet.out_port.empty() && is_frame) files_->Write(packet.out_port, packet.time + kOnTheCard, packet.out);
}

void Captures::Ended(const std::string&, const scenario::Tally&) { files_->Flush(); }

}  // namespace console
