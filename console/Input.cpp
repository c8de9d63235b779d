#include "console/Input.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <utility>

namespace console {
namespace {

/// All of a file. Nothing, and a message on standard error, when it cannot be read.
std::optional<std::string> ReadFile(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(path == "-" ? stdin : std::fopen(path.c_str(), "rb"),
                                                             &std::fclose);
  std::string text;
  char buffer[65536];
  for (std::size_t size = 1; file != nullptr && size > 0; text.append(buffer, size)) {
    size = std::fread(buffer, 1, sizeof buffer, file.get());
  }
  if (file != nullptr && std::ferror(file.get()) == 0) return text;

  const int reason = errno;
  std::cerr << "softcard: cannot read " << path << ": " << std::strerror(reason) << "; "
            << (reason == EISDIR   ? "name a scenario file in it"
                : reason == EACCES ? "make the file readable"
                                   : "check the path, or use - for standard input")
            << '\n';
  return std::nullopt;
}

}  // namespace

std::optional<scenario::Scenario> Load(const scenario::Language& language, const std::string& path) {
  auto text = ReadFile(path);
  if (!text) return std::nullopt;
  const std::string name = path == "-" ? "standard input" : path;
  scenario::ParsedScenario parsed = scenario::ParseScenario(language, name, *std::move(text));
  if (parsed.complaints.empty()) return std::move(parsed.scenario);
  for (const scenario::Complaint& complaint : parsed.complaints) std::cerr << complaint.Text(name);
  std::cerr << "softcard: " << name << " is unusable; nothing of it was run\n";
  return std::nullopt;
}

}  // namespace console
