#ifndef CONSOLE_COMMANDS_COMMANDS_H
#define CONSOLE_COMMANDS_COMMANDS_H

#include <CLI/CLI.hpp>
#include <memory>

#include "diagnosis/Changes.h"
#include "diagnosis/Ledger.h"
#include "scenario/Language.h"
#include "serve/Statements.h"
#include "softcard/Card.h"

namespace console {

enum ExitStatus { kAllHold = 0, kSomeFailed = 1, kUnusable = 2 };

/// What subcommands work with.
struct Console {
  /// With the statements of all rooms.
  explicit Console(softcard::Card& software_card);

  softcard::Card& card;
  scenario::Language language;
  diagnosis::Ledger ledger;  ///< of the scenario that was run last, if it watched
  diagnosis::Mark mark;
  serve::Living living;
  ExitStatus status = kAllHold;  ///< of the subcommand that was given
};

/// The command with all its subcommands.
std::unique_ptr<CLI::App> MakeApp(Console& console);

/// The status, or kUnusable, with a message, when standard output could not be written.
ExitStatus Flushed(ExitStatus status);

/// Each adds its subcommand, which does its work when `app` is parsed.
void AddRun(CLI::App& app, Console& console);
void AddCheck(CLI::App& app, Console& console);
void AddAudit(CLI::App& app, Console& console);
void AddDiff(CLI::App& app, Console& console);
void AddGraph(CLI::App& app, Console& console);
void AddReport(CLI::App& app, Console& console);
void AddSweep(CLI::App& app, Console& console);
void AddDiagnose(CLI::App& app, Console& console);
void AddReplay(CLI::App& app, Console& console);
void AddScenario(CLI::App& app, Console& console);
constexpr char kShellHelp[] = "Takes statements line by line, on a card of its own or a running one";
void AddShell(CLI::App& app, Console& console);
constexpr char kServeHelp[] = "Keeps a card running, for clients and on interfaces";
void AddServe(CLI::App& app, Console& console);
constexpr char kCtlHelp[] = "Asks a card that softcard serve keeps";
void AddCtl(CLI::App& app, Console& console);

}  // namespace console

#endif
