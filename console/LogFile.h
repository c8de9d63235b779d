#ifndef CONSOLE_LOG_FILE_H
#define CONSOLE_LOG_FILE_H

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace console {

/// A file's lines, or those of standard input for "-", however many there are. Throws std::runtime_error with the
/// reason and the remedy when it cannot be read or is no text of bytes.
class LogFile {
 public:
  /// In bytes; of a longer line nothing is given.
  static constexpr std::size_t kLongestLine = 64 << 10;

  explicit LogFile(const std::string& path);

  /// The next line, valid until the one after it; false at the end.
  bool Next(std::string_view& line);
  unsigned long too_long() const { return too_long_; }

 private:
  bool Fill();

  const std::string path_;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  bool in_long_line_ = false;
  unsigned long too_long_ = 0;
};

}  // namespace console

#endif
