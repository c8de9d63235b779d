#include "recorder/File.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace recorder {
namespace {

constexpr std::size_t kRoom = 160;

int OpenNew(const std::string& path) {
  const std::string older = path + ".1";
  // What is no file, /dev/null for instance, stays where it is.
  if (access(path.c_str(), F_OK) == 0 && access((path + "/").c_str(), F_OK) != 0 && errno == ENOTDIR &&
      path.rfind("/dev/", 0) != 0) {
    std::rename(path.c_str(), older.c_str());
  }
  return open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
}

std::uint64_t CountLines(std::string_view lines) {
  return static_cast<std::uint64_t>(std::count(lines.begin(), lines.end(), '\n'));
}

}  // namespace

File::~File() { Close(); }

bool File::Open(const std::string& path) noexcept {
  Close();
  path_ = path;
  fd_ = OpenNew(path);
  if (fd_ < 0) {
    std::fprintf(stderr, "hal_card_recorder: cannot write %s: %s; nothing is recorded\n", path.c_str(),
                 std::strerror(errno));
    return false;
  }
  rlimit limit{};
  size_allowed_ = getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY ? limit.rlim_cur : UINT64_MAX;
  size_ = missing_lines_ = 0;
  error_ = 0;
  return true;
}

void File::Close() noexcept {
  if (fd_ < 0) return;
  TellMissing();
  close(fd_);
  fd_ = -1;
}

void File::Write(std::string_view lines) noexcept {
  if (fd_ < 0) return;
  if (error_ != 0) {
    missing_lines_ += CountLines(lines);
    return;
  }
  std::size_t written = 0;
  int error = size_ + lines.size() > size_allowed_ ? EFBIG : 0;
  while (error == 0 && written < lines.size()) {
    const ssize_t count = write(fd_, lines.data() + written, lines.size() - written);
    if (count > 0) {
      written += static_cast<std::size_t>(count);
    } else if (count == 0 || errno != EINTR) {
      error = count == 0 ? ENOSPC : errno;
    }
  }
  if (error == 0) {
    size_ += lines.size();
  } else {
    missing_lines_ += CountLines(lines);
    Stop(error);
  }
}

void File::Stop(int error) noexcept {
  error_ = error;
  MakeRoom();
  std::fprintf(stderr, "hal_card_recorder: %s: %s; the recording stops, and its last line counts what is missing\n",
               path_.c_str(), std::strerror(error));
  TellMissing();
}

void File::MakeRoom() noexcept {
  char tail[4096];
  const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(size_, sizeof tail));
  const auto begin = static_cast<off_t>(size_ - length);
  if (pread(fd_, tail, length, begin) != static_cast<ssize_t>(length)) return;
  std::size_t keep = length;
  while (keep > 0 && (length - keep < kRoom || tail[keep - 1] != '\n')) --keep;
  missing_lines_ += CountLines({tail + keep, length - keep});
  size_ -= length - keep;
  if (ftruncate(fd_, static_cast<off_t>(size_)) != 0) error_ = errno;
}

void File::TellMissing() noexcept {
  if (error_ == 0 || fd_ < 0) return;
  char line[kRoom];
  const int length = std::snprintf(line, sizeof line, "%8d ! the recording stopped, %.80s: %12llu lines are missing\n",
                                   0, std::strerror(error_), static_cast<unsigned long long>(missing_lines_));
  // A disk that has no room even for this has said so on standard error.
  static_cast<void>(!pwrite(fd_, line, static_cast<std::size_t>(length), static_cast<off_t>(size_)));
}

}  // namespace recorder
