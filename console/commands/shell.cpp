#include "console/shell/Shell.h"

#include <cstdlib>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "console/Definitions.h"
#include "console/Formats.h"
#include "console/Input.h"
#include "console/TextPrinter.h"
#include "console/commands/Commands.h"
#include "scenario/Completion.h"
#include "scenario/Session.h"
#include "scenario/SourceFile.h"
#include "serve/Connection.h"

namespace console {
namespace {

struct ShellOptions {
  std::vector<std::string> paths;
  std::vector<std::string> definitions;
  std::string attach;
  bool all_calls = false;
  bool hex = false;
  std::string colour = "auto";
};

/// The card of this process.
class OwnCard : public ShellCard {
 public:
  OwnCard(Console& console, const ShellOptions& options, scenario::Counters definitions)
      : console_(console),
        definitions_(std::move(definitions)),
        printer_(std::cout, {Detail::kCalls, WantsColour(options.colour), 0, options.hex}),
        session_(console.language, console.card, {options.all_calls, false}, {&console.ledger}) {}

  ShellOutcome Do(scenario::SourceText lines) override {
    const scenario::Answer answer = session_.Do(std::move(lines), printer_, definitions_);
    std::cout.flush();
    std::cerr << answer.Why();
    if (answer.unusable()) return ShellOutcome::kUnusable;
    return answer.failed > 0 ? ShellOutcome::kSomeFailed : ShellOutcome::kAllHold;
  }

  std::vector<std::string> Complete(const std::string& line) override {
    return scenario::Completions(console_.language, console_.card, line);
  }

 private:
  Console& console_;
  const scenario::Counters definitions_;
  TextPrinter printer_;
  scenario::Session session_;
};

/// One that softcard serve keeps.
class RunningCard : public ShellCard {
 public:
  RunningCard(const std::string& socket, const std::string& format)
      : formats_(MakeFormats()), card_(socket, format, formats_) {}

  ShellOutcome Do(scenario::SourceText lines) override try {
    auto last = serve::Ending::kDone;
    for (std::string_view rest = lines.whole; !rest.empty();) {
      const std::size_t end = rest.find('\n');
      std::string said;
      last = card_.Ask(std::string(rest.substr(0, end)), [&said](std::string_view line) { said += line; });
      (last == serve::Ending::kUnusable ? std::cerr : std::cout) << said << std::flush;
      rest.remove_prefix(end + 1);
    }
    switch (last) {
      case serve::Ending::kDone: return ShellOutcome::kAllHold;
      case serve::Ending::kFailed: return ShellOutcome::kSomeFailed;
      case serve::Ending::kUnusable:
      case serve::Ending::kMore: break;
    }
    return ShellOutcome::kUnusable;
  } catch (const std::runtime_error& error) {
    std::cerr << "softcard: " << error.what() << '\n';
    return ShellOutcome::kGone;
  }

  std::vector<std::string> Complete(const std::string& line) override try {
    std::vector<std::string> words;
    card_.Ask("complete " + line,
              [&words](std::string_view word) { words.emplace_back(word.substr(0, word.size() - 1)); });
    return words;
  } catch (const std::runtime_error&) {
    return {};  // the next line says it
  }

 private:
  const serve::Formats formats_;
  serve::Connection card_;
};

ExitStatus StatusOf(ShellOutcome outcome) {
  switch (outcome) {
    case ShellOutcome::kAllHold: return kAllHold;
    case ShellOutcome::kSomeFailed: return kSomeFailed;
    case ShellOutcome::kUnusable:
    case ShellOutcome::kGone: break;
  }
  return kUnusable;
}

ExitStatus RunOwn(const ShellOptions& options, Console& console) {
  auto definitions = ReadDefinitions(options.definitions);
  const auto paths = Scenarios(options.paths);
  if (!definitions || !paths) return kUnusable;
  OwnCard card(console, options, std::move(*definitions));
  for (const std::string& path : *paths) {
    if (card.Do({path, scenario::ReadFile(path)}) == ShellOutcome::kUnusable) return kUnusable;
  }
  return StatusOf(RunShell(console.language, card));
}

ExitStatus RunAttached(const ShellOptions& options, const Console& console) {
  RunningCard card(options.attach, WantsColour(options.colour) ? "color" : "text");
  return StatusOf(RunShell(console.language, card));
}

}  // namespace

void AddShell(CLI::App& app, Console& console) {
  CLI::App* const shell = app.add_subcommand("shell", kShellHelp);
  const auto options = std::make_shared<ShellOptions>();
  CLI::Option* const files =
      shell
          ->add_option("FILE", options->paths,
                       "Scenarios, or directories with *.scn files, that come before the first line")
          ->type_name("");
  AddDefinitions(*shell, options->definitions);
  shell->add_flag("-a,--all-calls", options->all_calls, "Print what the module looks at, too");
  shell->add_flag("--hex", options->hex, "Print the bytes of frames that leave, too");
  shell->add_option("--color", options->colour, "auto: colours on a terminal, unless NO_COLOR is set")
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->capture_default_str();
  shell->add_option("--attach", options->attach, "The control socket of a running card, which takes the lines")
      ->type_name("SOCKET")
      ->excludes(files);
  shell->callback([&console, options] {
    console.status = options->attach.empty() ? RunOwn(*options, console) : RunAttached(*options, console);
  });
}

}  // namespace console
