#include "console/LogFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "scenario/Suggestion.h"

namespace console {
namespace {

constexpr std::size_t kBuffer = 4 * LogFile::kLongestLine;

[[noreturn]] void Fail(const std::string& path, const std::string& reason) {
  throw std::runtime_error("cannot read " + scenario::Printable(path) + ": " + reason);
}

std::string Remedy(int reason) {
  return reason == EISDIR   ? "name a log in it"
         : reason == EACCES ? "make the file readable"
                            : "check the path, or use - for standard input";
}

}  // namespace

LogFile::LogFile(const std::string& path)
    : path_(path), file_(path == "-" ? stdin : std::fopen(path.c_str(), "rb"), &std::fclose), buffer_(kBuffer) {
  if (file_ == nullptr) Fail(path_, std::string(std::strerror(errno)) + "; " + Remedy(errno));
  Fill();
  const std::string_view beginning(buffer_.data(), std::min<std::size_t>(end_, 2));
  if (beginning == "\xff\xfe" || beginning == "\xfe\xff") {
    Fail(path_, "it is UTF-16; give it as UTF-8: iconv -f UTF-16 -t UTF-8 LOG | softcard diagnose -");
  }
  if (beginning == "\x1f\x8b") Fail(path_, "it is compressed; unpack it: zcat LOG | softcard diagnose -");
}

bool LogFile::Next(std::string_view& line) {
  while (true) {
    const char* const begin = buffer_.data() + begin_;
    const void* const end = std::memchr(begin, '\n', end_ - begin_);
    const bool whole = end != nullptr;
    const std::size_t size = whole ? static_cast<std::size_t>(static_cast<const char*>(end) - begin) : end_ - begin_;
    const bool is_long = in_long_line_ || size > kLongestLine;
    if (!whole && is_long) {
      in_long_line_ = true;
      begin_ = end_;
    }
    if (!whole && Fill()) continue;
    if (!whole && size == 0 && !in_long_line_) return false;
    begin_ = std::min(begin_ + size + 1, end_);
    in_long_line_ = false;
    if (is_long) ++too_long_;
    line = is_long ? std::string_view() : std::string_view(begin, size);
    return true;
  }
}

/// Makes room behind what is left, and reads on; false at the end.
bool LogFile::Fill() {
  std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  const std::size_t read = std::fread(buffer_.data() + end_, 1, buffer_.size() - end_, file_.get());
  const int reason = errno;
  if (std::ferror(file_.get()) != 0) Fail(path_, std::string(std::strerror(reason)) + "; " + Remedy(reason));
  end_ += read;
  return read > 0;
}

}  // namespace console
