// Writes what the command and its language say of themselves: `man`, the manual page; `completion`, for bash; `forms`,
// the forms of all statements, as docs/scenarios.md lists them.
#include <iostream>
#include <string>

#include "console/commands/Commands.h"

namespace {

/// As roff reads it.
std::string Escaped(const std::string& text) {
  std::string escaped = text[0] == '.' || text[0] == '\'' ? "\\&" : "";
  for (const char c : text) escaped += c == '\\' ? "\\e" : c == '-' ? "\\-" : std::string(1, c);
  return escaped;
}

void Item(const std::string& term, const std::string& text) {
  std::cout << ".TP\n.B " << Escaped(term) << '\n' << Escaped(text) << '\n';
}

std::vector<const CLI::App*> SubcommandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

/// "-q, --quiet", "--junit FILE", "FILE".
std::string NameOf(const CLI::Option& option) {
  if (option.get_positional()) return option.get_name(true);
  std::string name;
  for (const std::string& one : option.get_snames()) name += (name.empty() ? "-" : ", -") + one;
  for (const std::string& one : option.get_lnames()) name += (name.empty() ? "--" : ", --") + one;
  return name + (option.get_type_name().empty() ? "" : ' ' + option.get_type_name());
}

/// "expect [no] call [CALL]".
std::string FormOf(const scenario::Expectation& expectation) {
  constexpr std::size_t kExpect = 7;
  const std::string& usage = expectation.form.usage();
  return expectation.negatable ? "expect [no] " + usage.substr(kExpect) : usage;
}

void Manual(const CLI::App& app, const scenario::Language& language) {
  std::cout << ".TH SOFTCARD 1 \"\" \"softcard " SOFTCARD_VERSION "\"\n.SH NAME\nsoftcard \\- line card in software\n"
            << ".SH SYNOPSIS\n";
  for (const CLI::App* subcommand : SubcommandsOf(app)) {
    std::cout << ".B softcard " << subcommand->get_name() << "\n[OPTIONS]";
    for (const CLI::Option* option : subcommand->get_options()) {
      if (option->get_positional()) std::cout << ' ' << Escaped(NameOf(*option));
    }
    std::cout << "\n.br\n";
  }
  std::cout << ".SH DESCRIPTION\n" << Escaped(app.get_description()) << '\n';
  for (const CLI::App* subcommand : SubcommandsOf(app)) {
    std::cout << ".SS " << subcommand->get_name() << '\n' << Escaped(subcommand->get_description()) << '\n';
    for (const CLI::Option* option : subcommand->get_options()) Item(NameOf(*option), option->get_description());
  }
  std::cout << ".SH STATEMENTS\nA scenario has one on each line.\n";
  for (const scenario::Statement& statement : language.statements()) Item(statement.form.usage(), statement.help);
  std::cout << ".SH EXPECTATIONS\n";
  for (const scenario::Expectation& expectation : language.expectations()) Item(FormOf(expectation), expectation.help);
  std::cout << ".SH EXIT STATUS\n" << Escaped(app.get_footer()) << '\n';
}

void Completion(const CLI::App& app) {
  const auto options = [](const CLI::App& of) {
    std::string words;
    for (const CLI::Option* option : of.get_options()) {
      for (const std::string& name : option->get_lnames()) words += " --" + name;
    }
    return words;
  };
  std::string names, cases;
  for (const CLI::App* subcommand : SubcommandsOf(app)) {
    const std::string& name = subcommand->get_name();
    names += ' ' + name;
    cases += "    " + name + ") words=\"" + options(*subcommand).substr(1) + "\" ;;\n";
  }
  std::cout << "# bash completion for softcard\n"
            << "_softcard() {\n"
            << "  local word=${COMP_WORDS[COMP_CWORD]} words\n"
            << "  COMPREPLY=()\n"
            << "  if [ \"$COMP_CWORD\" -gt 1 ] && [ \"${word:0:1}\" != - ]; then\n"
            << "    mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n"
            << "    return\n"
            << "  fi\n"
            << "  case $([ \"$COMP_CWORD\" -gt 1 ] && echo \"${COMP_WORDS[1]}\") in\n"
            << cases << "    *) words=\"" << names.substr(1) << options(app) << "\" ;;\n"
            << "  esac\n"
            << "  mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$word\")\n"
            << "}\n"
            << "complete -o filenames -F _softcard softcard\n";
}

void Forms(const scenario::Language& language) {
  for (const scenario::Statement& statement : language.statements()) {
    std::cout << "    " << statement.form.usage() << '\n';
  }
  for (const scenario::Expectation& expectation : language.expectations()) {
    std::cout << "    " << FormOf(expectation) << '\n';
  }
}

}  // namespace

int main(int argc, char** argv) {
  console::Console console(softcard::Card::Get());
  const auto app = console::MakeApp(console);
  const std::string what = argc == 2 ? argv[1] : "";
  if (what == "man") {
    Manual(*app, console.language);
  } else if (what == "completion") {
    Completion(*app);
  } else if (what == "forms") {
    Forms(console.language);
  } else {
    std::cerr << "usage: softcard_describe man|completion|forms\n";
    return console::kUnusable;
  }
  return console::Flushed(console::kAllHold);
}
