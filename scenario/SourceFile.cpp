#include "scenario/SourceFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "scenario/Suggestion.h"

namespace scenario {

std::string ReadFile(const std::string& path, std::size_t most) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(path == "-" ? stdin : std::fopen(path.c_str(), "rb"),
                                                             &std::fclose);
  std::string text;
  char buffer[65536];
  for (std::size_t size = 1; file != nullptr && size > 0 && text.size() <= most; text.append(buffer, size)) {
    size = std::fread(buffer, 1, sizeof buffer, file.get());
  }
  const int reason = errno;
  if (file == nullptr || std::ferror(file.get()) != 0) {
    throw std::runtime_error("cannot read " + Printable(path) + ": " + std::strerror(reason) + "; " +
                             (reason == EISDIR   ? "name a scenario file in it"
                              : reason == EACCES ? "make the file readable"
                                                 : "check the path"));
  }
  if (text.size() > most) {
    throw std::runtime_error("cannot read " + Printable(path) + ": a scenario has at most " +
                             std::to_string(kMostSource >> 20) +
                             " MiB with all that it includes; loops make it shorter");
  }
  return text;
}

}  // namespace scenario
