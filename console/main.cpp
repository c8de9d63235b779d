#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <optional>

#include "scenario/Runner.h"
#include "scenario/ScenarioParser.h"

namespace {

enum ExitCode { kAllHold = 0, kSomeFailed = 1, kUnusable = 2 };

/// All of a file, or of standard input for "-". Nothing, and a message on standard error, when it cannot be read.
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

/// The scenario, or nothing when it is unusable, with the reasons on standard error.
std::optional<scenario::Scenario> Load(const std::string& path) {
  const auto text = ReadFile(path);
  if (!text) return std::nullopt;
  const std::string name = path == "-" ? "standard input" : path;
  scenario::ParsedScenario parsed = scenario::ParseScenario(name, *text);
  if (parsed.complaints.empty()) return std::move(parsed.scenario);
  for (const scenario::Complaint& complaint : parsed.complaints) std::cerr << complaint.Text(name);
  std::cerr << "softcard: " << name << " is unusable; nothing of it was run\n";
  return std::nullopt;
}

bool WantsColour(const std::string& choice) {
  if (choice != "auto") return choice == "always";
  const char* const no_colour = std::getenv("NO_COLOR");
  return isatty(STDOUT_FILENO) && (no_colour == nullptr || *no_colour == '\0');
}

}  // namespace

int main(int argc, char** argv) try {
  CLI::App app("Runs the encapsulation module on a line card in software.");
  app.name("softcard");
  app.set_version_flag("--version", "softcard " SOFTCARD_VERSION);
  app.require_subcommand(0, 1);
  app.footer("Exit status: 0 when every expectation holds, 1 when one fails, 2 for anything unusable.");

  std::string path;
  bool quiet = false;
  bool summary = false;
  bool all_calls = false;
  std::string colour = "auto";
  CLI::App* const run = app.add_subcommand("run", "Runs a scenario and checks its expectations");
  run->add_option("FILE", path, "The scenario, - for standard input")->required()->type_name("");
  CLI::Option* const quiet_flag = run->add_flag("-q,--quiet", quiet, "Print failures and the last line only");
  run->add_flag("-s,--summary", summary, "Print a line for each request, or for several that are alike")
      ->excludes(quiet_flag);
  run->add_flag("-a,--all-calls", all_calls, "Print what the module looks at, too");
  run->add_option("--color", colour, "auto: colours on a terminal, unless NO_COLOR is set")
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->capture_default_str();
  CLI::App* const check = app.add_subcommand("check", "Tells whether a scenario is usable, without running it");
  check->add_option("FILE", path, "The scenario, - for standard input")->required()->type_name("");

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kAllHold : kUnusable;
  }

  if (app.get_subcommands().empty()) {
    std::cerr << app.help();
    return kUnusable;
  }

  std::ios::sync_with_stdio(false);
  const auto scenario = Load(path);
  if (!scenario) return kUnusable;
  if (check->parsed()) {
    std::cout << scenario->file << " is usable\n";
    return kAllHold;
  }
  scenario::RunOptions options;
  options.detail = quiet     ? scenario::Detail::kFailures
                   : summary ? scenario::Detail::kRequests
                             : scenario::Detail::kCalls;
  options.accesses = all_calls;
  options.colour = WantsColour(colour);
  const scenario::Tally tally = scenario::Run(*scenario, options, std::cout);
  if (!std::cout.flush()) {
    std::cerr << "softcard: cannot write all of the output; is there room where it goes?\n";
    return kUnusable;
  }
  return tally.failed == 0 ? kAllHold : kSomeFailed;
} catch (const std::exception& exception) {
  std::cerr << "softcard: " << exception.what() << '\n';
  return kUnusable;
}
