#include "console/CaptureFiles.h"

#include <pcap/pcap.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "softcard/LimId.h"

namespace console {
namespace {

constexpr std::uint64_t kSecond = 1'000'000'000;
constexpr int kMostBytes = 262144;  // of a frame, as capture files have it

[[noreturn]] void Fail(const std::string& path, const char* reason) {
  throw std::runtime_error("cannot write captures: " + path + ": " + reason +
                           "; name a directory that can be written and has room");
}

bool IsCaptureOfPort(const std::filesystem::directory_entry& entry) {
  const std::filesystem::path& path = entry.path();
  if (entry.is_symlink() || !entry.is_regular_file() || path.extension() != ".pcap") return false;
  const auto port = softcard::ReadLimId(path.stem().native());
  return port && softcard::LimIdType(*port) != limid_type_l3_vlan && softcard::LimIdName(*port) == path.stem();
}

}  // namespace

void CaptureFiles::Close::operator()(pcap* capture) const { pcap_close(capture); }

void CaptureFiles::Close::operator()(pcap_dumper* file) const { pcap_dump_close(file); }

CaptureFiles::CaptureFiles(std::string directory)
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
  // Of ports that see nothing this time, they would be taken for this run's.
  for (const auto& entry : std::filesystem::directory_iterator(directory_)) {
    if (IsCaptureOfPort(entry)) std::filesystem::remove(entry.path());
  }
}

CaptureFiles::~CaptureFiles() = default;

CaptureFiles::File CaptureFiles::Open(const std::string& path) {
  std::unique_ptr<pcap_dumper, Close> file(pcap_dump_open(capture_.get(), path.c_str()));
  if (!file || pcap_dump_flush(file.get()) != 0) Fail(path, std::strerror(errno));
  return file;
}

void CaptureFiles::Write(const std::string& port, std::uint64_t time, softcard::View frame) {
  const std::string path = directory_ + '/' + port + ".pcap";
  auto& file = files_[port];
  if (!file) file = Open(path);
  const long long before = pcap_dump_ftell64(file.get());
  pcap_pkthdr header{};
  header.ts.tv_sec = static_cast<time_t>(time / kSecond);
  header.ts.tv_usec = static_cast<suseconds_t>(time % kSecond);
  header.len = static_cast<bpf_u_int32>(frame.size);
  header.caplen = std::min<bpf_u_int32>(header.len, kMostBytes);
  pcap_dump(reinterpret_cast<u_char*>(file.get()), &header, frame.data);
  if (pcap_dump_flush(file.get()) == 0 && std::ferror(pcap_dump_file(file.get())) == 0) return;
  const int reason = errno;
  file.reset();
  // Half a frame would make the file one that readers refuse.
  if (truncate(path.c_str(), before) != 0) Fail(path, std::strerror(errno));
  Fail(path, std::strerror(reason));
}

}  // namespace console
