#include "console/Main.h"

#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "console/commands/Commands.h"
#include "scenario/Suggestion.h"

namespace console {

namespace {

/// A word where a subcommand belongs, and there is none of this name.
bool IsMisspelled(const CLI::App& app, const std::string& word) {
  if (word.empty() || word[0] == '-') return false;
  std::vector<std::string> names;
  for (const CLI::App* subcommand : app.get_subcommands([](const CLI::App*) { return true; })) {
    if (subcommand->get_name() == word) return false;
    names.push_back(subcommand->get_name());
  }
  std::cerr << "softcard: there is no subcommand " << scenario::Quoted(word) << scenario::Suggest(word, names) << '\n';
  return true;
}

}  // namespace

int Main(int argc, char** argv) try {
  std::ios::sync_with_stdio(false);
  Console console(softcard::Card::Get());
  const auto app = MakeApp(console);
  if (argc > 1 && IsMisspelled(*app, argv[1])) return kUnusable;
  try {
    app->parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return Flushed(app->exit(error) == 0 ? kAllHold : kUnusable);
  }
  if (!app->get_subcommands().empty()) return Flushed(console.status);
  std::cerr << app->help();
  return kUnusable;
} catch (const std::exception& exception) {
  std::cerr << "softcard: " << exception.what() << '\n';
  return kUnusable;
}

}  // namespace console
