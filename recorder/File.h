#ifndef RECORDER_FILE_H
#define RECORDER_FILE_H

#include <cstdint>
#include <string>
#include <string_view>

namespace recorder {

/// The file that a recording goes to. Every line is handed to the kernel at once, so that a process that dies leaves
/// all that it has written. When the disk refuses one, the file keeps its complete lines, and its last line tells from
/// then on how many are missing. Nothing here throws or ends the process.
class File {
 public:
  File() = default;
  ~File();
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  /// Begins a new file; an older one of that name becomes `path`.1. False, with a line on standard error, when it
  /// cannot.
  bool Open(const std::string& path) noexcept;
  void Close() noexcept;
  bool is_open() const { return fd_ >= 0; }
  std::uint64_t size() const { return size_; }

  /// `lines` are complete ones.
  void Write(std::string_view lines) noexcept;
  std::uint64_t missing_lines() const { return missing_lines_; }
  /// Brings the last line of a file that lacks some up to date.
  void TellMissing() noexcept;

 private:
  void Stop(int error) noexcept;
  /// Takes complete lines away from the end until there is room for one that tells.
  void MakeRoom() noexcept;

  std::string path_;
  int fd_ = -1;
  std::uint64_t size_ = 0;
  std::uint64_t size_allowed_ = 0;  ///< by the process's limit, beyond which writing would kill it
  std::uint64_t missing_lines_ = 0;
  int error_ = 0;
};

}  // namespace recorder

#endif
