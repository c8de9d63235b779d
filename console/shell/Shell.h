#ifndef CONSOLE_SHELL_SHELL_H
#define CONSOLE_SHELL_SHELL_H

#include <string>
#include <vector>

#include "scenario/Language.h"
#include "scenario/SourceLine.h"

namespace console {

/// What became of lines.
enum class ShellOutcome {
  kAllHold,
  kSomeFailed,  ///< expectations
  kUnusable,    ///< nothing was done
  kGone,        ///< the card is
};

/// The card that a shell's lines are for: its own, or one that runs elsewhere.
class ShellCard {
 public:
  virtual ~ShellCard() = default;

  /// Does lines, and prints what comes of them.
  virtual ShellOutcome Do(scenario::SourceText lines) = 0;
  /// What the last word of a line can be, as in scenario::Completions.
  virtual std::vector<std::string> Complete(const std::string& line) = 0;
};

/// Lines from standard input for a card, one statement after another: from a terminal with an editor, a prompt, colours
/// and a history; from elsewhere as they come. Besides the language's statements there are `help [STATEMENT]`, the same
/// by `?` behind what is there of a line, and `quit`. Gives the worst outcome of lines that did not come from a
/// terminal: there somebody has seen what each of them did.
ShellOutcome RunShell(const scenario::Language& language, ShellCard& card);

}  // namespace console

#endif
