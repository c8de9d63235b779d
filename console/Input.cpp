#include "console/Input.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "scenario/SourceFile.h"
#include "scenario/Suggestion.h"

namespace console {

std::optional<scenario::Scenario> Load(const scenario::Language& language, const std::string& path,
                                       const scenario::Counters& definitions) {
  if (path == "-" && isatty(STDIN_FILENO)) {
    std::cerr << "softcard: reading a scenario from the terminal; Ctrl-D ends it\n";
  }
  std::string text;
  try {
    text = scenario::ReadFile(path);
  } catch (const std::runtime_error& error) {
    std::cerr << "softcard: " << error.what() << '\n';
    return std::nullopt;
  }
  const std::string name = path == "-" ? "standard input" : path;
  scenario::ParsedScenario parsed = scenario::ParseScenario(language, name, std::move(text), definitions);
  if (parsed.complaints.empty()) return std::move(parsed.scenario);
  for (const scenario::Complaint& complaint : parsed.complaints) std::cerr << complaint.Text();
  if (parsed.more_complaints > 0) std::cerr << "softcard: and " << parsed.more_complaints << " more errors\n";
  std::cerr << "softcard: " << scenario::Printable(name) << " is unusable; nothing of it was run\n";
  return std::nullopt;
}

void CutAfter(unsigned line, scenario::Scenario& scenario) {
  if (line == 0) return;
  const auto later = [&](const scenario::SourceLine& one) { return one.number > line && *one.file == scenario.file; };
  scenario.lines.erase(std::remove_if(scenario.lines.begin(), scenario.lines.end(), later), scenario.lines.end());
}

std::optional<std::vector<std::string>> Scenarios(const std::vector<std::string>& paths) {
  namespace fs = std::filesystem;
  std::vector<std::string> scenarios;
  for (const std::string& path : paths) {
    std::error_code error;
    if (!fs::is_directory(path, error)) {
      scenarios.push_back(path);
      continue;
    }
    std::vector<std::string> found;
    for (fs::recursive_directory_iterator entry(path, error), end; !error && entry != end; entry.increment(error)) {
      if (entry->path().extension() == ".scn") found.push_back(entry->path().string());
    }
    if (found.empty()) {
      std::cerr << "softcard: there is no *.scn file in " << scenario::Printable(path)
                << (error ? ": " + error.message() : "; name a scenario or another directory") << '\n';
      return std::nullopt;
    }
    std::sort(found.begin(), found.end());
    scenarios.insert(scenarios.end(), found.begin(), found.end());
  }
  return scenarios;
}

}  // namespace console
