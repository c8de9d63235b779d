#include <chrono>
#include <csignal>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "console/CaptureFiles.h"
#include "console/Definitions.h"
#include "console/Formats.h"
#include "console/Recording.h"
#include "console/TextPrinter.h"
#include "console/commands/Commands.h"
#include "scenario/Session.h"
#include "scenario/SourceFile.h"
#include "scenario/Suggestion.h"
#include "serve/Server.h"
#include "serve/SessionModule.h"
#include "serve/SocketPath.h"

namespace console {
namespace {

constexpr std::size_t kIdleRequests = 10'000;  // remembered, although nothing on the card is theirs

struct ServeOptions {
  std::vector<std::string> paths;
  std::vector<std::string> definitions;
  std::string control;
  std::vector<std::string> ports;
  std::vector<std::string> hosts;
  std::string pcap;
  std::string recording;
  std::string fpm;
  unsigned quiet = 30;
};

/// Tells of steps that change the card, other than those of its control plane.
class CardChanges : public scenario::Observer {
 public:
  void Took(const scenario::Step& step) override {
    const bool changes = step.kind == scenario::Kind::kRequest || step.kind == scenario::Kind::kPlan;
    if (changes && tell && step.file != serve::kControlPlane) tell();
  }
  void Ended(const std::string&, const scenario::Tally&) override {}

  std::function<void()> tell{};
};

/// Of "eth1=veth0"s. Throws std::runtime_error.
serve::Bindings ReadBindings(const std::vector<std::string>& texts, const char* option) {
  serve::Bindings bindings;
  for (const std::string& text : texts) {
    const std::size_t equals = text.find('=');
    if (equals == 0 || equals >= text.size() - 1) {
      throw std::runtime_error(std::string(option) + " takes PORT=INTERFACE; " + scenario::Quoted(text) +
                               " does not fit");
    }
    bindings.emplace_back(text.substr(0, equals), text.substr(equals + 1));
  }
  return bindings;
}

/// Why nobody finds the port of [ADDRESS:]PORT; empty when somebody may.
std::string CheckPort(const std::string& address) {
  const std::string port = address.substr(address.rfind(':') + 1);
  if (port.find_first_not_of('0') != std::string::npos) return "";
  return scenario::Quoted(address) +
         " names no port that a control plane can connect to, such as 127.0.0.1:2620 or 2620";
}

/// Frames with the time that it is. What cannot be written is said once, and ends the files.
serve::Ports::Capture CaptureInto(std::optional<CaptureFiles>& files) {
  return [&files](const std::string& port, softcard::View frame) {
    using std::chrono::nanoseconds;
    if (!files) return false;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    try {
      files->Write(port, static_cast<std::uint64_t>(std::chrono::duration_cast<nanoseconds>(now).count()), frame);
      return true;
    } catch (const std::runtime_error& error) {
      std::cerr << "softcard: " << error.what() << "; no more is captured\n";
      files.reset();
      return false;
    }
  };
}

ExitStatus Apply(const std::string& path, const scenario::Counters& definitions, scenario::Session& session) {
  TextPrinter printer(std::cout, {Detail::kFailures});
  const std::string name = path == "-" ? "standard input" : path;
  const scenario::Answer answer = session.Do({name, scenario::ReadFile(path)}, printer, definitions);
  if (answer.unusable()) {
    std::cerr << answer.Why() << "softcard: " << scenario::Printable(name) << " is unusable; no card is served\n";
    return kUnusable;
  }
  if (answer.failed == 0) return kAllHold;
  std::cerr << "softcard: not all that " << scenario::Printable(name) << " expects holds; no card is served\n";
  return kSomeFailed;
}

ExitStatus Serve(const ServeOptions& options, Console& console) {
  const auto definitions = ReadDefinitions(options.definitions);
  if (!definitions) return kUnusable;
  // Who reads the output may leave; the card stays.
  std::signal(SIGPIPE, SIG_IGN);
  // There is nothing to report before the card is ready.
  std::signal(SIGUSR1, SIG_IGN);
  OlderRecordings older_recordings;
  if (!options.recording.empty()) {
    if (!RecordInto(options.recording)) return kUnusable;
    older_recordings.Keep(options.recording);
  }
  std::optional<CaptureFiles> captures;
  const serve::Server::Settings settings{options.control.empty() ? serve::DefaultSocket("--control") : options.control,
                                         ReadBindings(options.ports, "--port"),
                                         ReadBindings(options.hosts, "--host"),
                                         options.pcap.empty() ? nullptr : CaptureInto(captures),
                                         options.fpm,
                                         std::chrono::seconds(options.quiet)};
  const auto formats = MakeFormats();
  const auto say = [](const std::string& what) { std::cerr << "softcard: " << what << '\n'; };
  CardChanges changes;
  console.ledger = diagnosis::Ledger(kIdleRequests);
  scenario::Session session(console.language, console.card, {}, {&console.ledger, &changes});
  const serve::SessionModule module(session, console.living.in_statement);
  std::optional<router::Router> router;
  if (!options.fpm.empty()) {
    router.emplace(module, console.card.tables(), softcard::LimId("cpu"), say, [&module] { return module.refused(); });
    console.living.router = &*router;
  }
  for (const std::string& path : options.paths) {
    const ExitStatus status = Apply(path, *definitions, session);
    if (status != kAllHold) return status;
  }
  TextPrinter silent(std::cout, {Detail::kFailures});
  session.Begin(silent);
  serve::Server server(settings, session, console.language, formats, console.card, console.living, say);
  if (!options.pcap.empty()) captures.emplace(options.pcap);
  older_recordings.StartSucceeded();
  console.living.interfaces = [&server] { return server.ports().Rows(); };
  if (serve::ControlPlane* const control_plane = server.control_plane()) {
    console.living.control_plane = [control_plane] { return control_plane->Rows(); };
    changes.tell = [control_plane] { control_plane->CardChanged(); };
  }
  const auto report = [&session] {
    TextPrinter printer(std::cout, {});
    session.Do({"softcard serve", "show counters\nshow interfaces"}, printer);
    std::cout.flush();
  };
  std::cout << "ready" << std::endl;
  server.Run(report);
  report();
  return Flushed(kAllHold);
}

}  // namespace

void AddServe(CLI::App& app, Console& console) {
  CLI::App* const serve = app.add_subcommand("serve", kServeHelp);
  const auto options = std::make_shared<ServeOptions>();
  serve->add_option("FILE", options->paths, "A scenario that the card begins with, - for standard input")
      ->type_name("");
  AddDefinitions(*serve, options->definitions);
  serve->add_option("--control", options->control, "The socket for clients; without it $XDG_RUNTIME_DIR/softcard.sock")
      ->type_name("SOCKET");
  serve->add_option("--port", options->ports, "PORT=INTERFACE: the network interface that a port is")
      ->type_name("BINDING")
      ->expected(1)
      ->allow_extra_args(false)
      ->take_all();
  serve->add_option("--host", options->hosts, "PORT=INTERFACE: the port's side towards the route processor")
      ->type_name("BINDING")
      ->expected(1)
      ->allow_extra_args(false)
      ->take_all();
  serve->add_option("--pcap", options->pcap, "Write what each port sees into DIR/PORT.pcap")->type_name("DIR");
  serve->add_option("--record", options->recording, "Record the module's calls as well; softcard replay reads it")
      ->type_name("FILE");
  CLI::Option* const fpm =
      serve->add_option("--fpm", options->fpm, "Where a control plane's forwarding plane manager connects to")
          ->type_name("[ADDRESS:]PORT")
          ->check(CheckPort);
  serve->add_option("--fpm-quiet", options->quiet, "So long after its last word what it did not tell again goes; 30")
      ->type_name("SECONDS")
      ->needs(fpm)
      ->check(CLI::Range(1U, 86400U));
  serve->callback([&console, options] { console.status = Serve(*options, console); });
}

}  // namespace console
