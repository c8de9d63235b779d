#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "console/commands/Commands.h"
#include "diagnosis/Statements.h"
#include "scenario/Suggestion.h"

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

int main(int argc, char** argv) try {
  std::ios::sync_with_stdio(false);
  scenario::Language language;
  scenario::AddStandard(language);
  diagnosis::Ledger ledger;
  diagnosis::AddAudit(language, ledger);
  console::Console console{softcard::Card::Get(), language, ledger};
  const auto app = console::MakeApp(console);
  if (argc > 1 && IsMisspelled(*app, argv[1])) return console::kUnusable;
  try {
    app->parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return console::Flushed(app->exit(error) == 0 ? console::kAllHold : console::kUnusable);
  }
  if (!app->get_subcommands().empty()) return console::Flushed(console.status);
  std::cerr << app->help();
  return console::kUnusable;
} catch (const std::exception& exception) {
  std::cerr << "softcard: " << exception.what() << '\n';
  return console::kUnusable;
}
