#include <algorithm>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "console/Formats.h"
#include "console/commands/Commands.h"
#include "serve/Connection.h"
#include "serve/SocketPath.h"

namespace console {
namespace {

using serve::Ending;

struct CtlOptions {
  std::string socket;
  bool json = false;
  std::vector<std::string> statements;
};

/// An argument may have several, as "$(cat FILE)" does; each has an answer of its own.
std::vector<std::string> Lines(const std::vector<std::string>& arguments) {
  std::vector<std::string> lines;
  for (const std::string& argument : arguments) {
    std::istringstream text(argument);
    for (std::string line; std::getline(text, line);) lines.push_back(line);
  }
  return lines;
}

/// One after another, up to the first that is unusable.
ExitStatus Ctl(const CtlOptions& options) {
  const std::string name = options.json ? "json" : "text";
  const auto formats = MakeFormats();
  serve::Connection card(options.socket.empty() ? serve::DefaultSocket("--socket") : options.socket, name, formats);
  Ending worst = Ending::kDone;
  Ending last = Ending::kDone;
  for (const std::string& line : Lines(options.statements)) {
    std::string said;
    last = card.Ask(line, [&said](std::string_view part) { said += part; });
    const bool is_error = last == Ending::kUnusable && !options.json;
    (is_error ? std::cerr : std::cout) << said;
    if (last == Ending::kUnusable) return kUnusable;
    if (last == Ending::kFailed) worst = last;
  }
  if (last == Ending::kMore) {
    std::cerr << "softcard: no statement says \"end\" to what has begun; it was not done\n";
    return kUnusable;
  }
  return worst == Ending::kDone ? kAllHold : kSomeFailed;
}

}  // namespace

void AddCtl(CLI::App& app, Console& console) {
  CLI::App* const ctl = app.add_subcommand("ctl", kCtlHelp);
  const auto options = std::make_shared<CtlOptions>();
  ctl->add_option("STATEMENT", options->statements, "A line of a scenario; several are done one after another")
      ->required()
      ->type_name("");
  ctl->add_option("--socket", options->socket, "The card's control socket; without it $XDG_RUNTIME_DIR/softcard.sock")
      ->type_name("SOCKET");
  ctl->add_flag("--json", options->json, "Print a JSON object a line, for programs");
  ctl->callback([&console, options] { console.status = Flushed(Ctl(*options)); });
}

}  // namespace console
