#include "console/shell/Shell.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <optional>
#include <stdexcept>

#include "console/shell/Help.h"
#include "console/shell/LineEditor.h"
#include "scenario/Session.h"
#include "scenario/Suggestion.h"
#include "scenario/Tokens.h"

namespace console {
namespace {

constexpr char kPrompt[] = "softcard> ";
constexpr char kMorePrompt[] = "     ...> ";  ///< of a loop or a block that has not ended

/// Of "help show" and "show ?" the "show"; nothing for a line that asks for no help.
std::optional<std::string> AskedFor(const std::string& line) {
  const std::string text(scenario::Trim(line));
  if (text == "help") return "";
  if (text.rfind("help ", 0) == 0) return std::string(scenario::Trim(text.substr(5)));
  if (text.empty() || text.back() != '?') return std::nullopt;
  return std::string(scenario::Trim(text.substr(0, text.size() - 1)));
}

bool Ends(const std::string& line) {
  const std::string_view text = scenario::Trim(line);
  return text == "quit" || text == "exit";
}

/// Takes lines, does what they make up.
class Interpreter {
 public:
  Interpreter(const scenario::Language& language, ShellCard& card)
      : language_(language), card_(card), lines_(language, "shell") {}

  bool is_waiting() const { return !lines_.empty(); }
  void Forget() { lines_.Take(); }

  ShellOutcome Take(const std::string& line) {
    if (!is_waiting()) {
      if (const auto words = AskedFor(line)) {
        std::cout << Help(language_, *words);
        return ShellOutcome::kAllHold;
      }
    }
    try {
      return lines_.Add(line) ? card_.Do(lines_.Take()) : ShellOutcome::kAllHold;
    } catch (const std::runtime_error& error) {
      std::cerr << "error: " << error.what() << '\n';
      return ShellOutcome::kUnusable;
    }
  }

  /// What waits for its end waits in vain.
  ShellOutcome End() {
    if (!is_waiting()) return ShellOutcome::kAllHold;
    return card_.Do(lines_.Take());
  }

 private:
  const scenario::Language& language_;
  ShellCard& card_;
  scenario::Collector lines_;
};

ShellOutcome OnTerminal(Interpreter& interpreter, ShellCard& card) {
  std::cout << "Statements of the scenario language; help and ? list them, Tab completes, Ctrl-D ends.\n";
  LineEditor editor(HistoryFile(), [&card](const std::string& line) { return card.Complete(line); });
  for (std::string line;;) {
    std::cout.flush();
    switch (editor.Read(interpreter.is_waiting() ? kMorePrompt : kPrompt, &line)) {
      case LineEditor::Ending::kCancelled: interpreter.Forget(); continue;
      case LineEditor::Ending::kEnd: return ShellOutcome::kAllHold;
      case LineEditor::Ending::kLine: break;
    }
    if (Ends(line)) return ShellOutcome::kAllHold;
    if (interpreter.Take(line) == ShellOutcome::kGone) return ShellOutcome::kGone;
  }
}

}  // namespace

ShellOutcome RunShell(const scenario::Language& language, ShellCard& card) {
  Interpreter interpreter(language, card);
  if (isatty(STDIN_FILENO)) return OnTerminal(interpreter, card);
  ShellOutcome worst = ShellOutcome::kAllHold;
  for (std::string line; worst != ShellOutcome::kGone && std::getline(std::cin, line) && !Ends(line);) {
    worst = std::max(worst, interpreter.Take(line));
  }
  return std::max(worst, interpreter.End());
}

}  // namespace console
