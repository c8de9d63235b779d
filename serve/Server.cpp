#include "serve/Server.h"

#include <csignal>
#include <memory>
#include <system_error>
#include <utility>

namespace serve {

Server::Server(const Settings& settings, scenario::Session& session, const scenario::Language& language,
               const Formats& formats, softcard::Card& card, const Living& living, Ports::Say say)
    : signals_(events_, SIGINT, SIGTERM, SIGUSR1),
      ports_(events_, card, living, settings.ports, settings.hosts, say, settings.capture),
      control_(events_, settings.socket, [&](const std::string& client) {
        return std::make_unique<Conversation>(session, language, formats, client);
      }) {
  // Whoever ignores it, as nohup does, wants the card to outlive a terminal.
  struct sigaction hang_up {};
  sigaction(SIGHUP, nullptr, &hang_up);
  if (hang_up.sa_handler != SIG_IGN) signals_.add(SIGHUP);
  if (!settings.fpm.empty()) {
    control_plane_.emplace(events_, settings.fpm, settings.quiet, *living.router, std::move(say));
  }
}

void Server::Run(const std::function<void()>& report) {
  WaitForSignal(report);
  events_.run();
}

void Server::WaitForSignal(const std::function<void()>& report) {
  signals_.async_wait([this, &report](std::error_code error, int signal) {
    if (error) return;
    if (signal != SIGUSR1) return events_.stop();
    report();
    WaitForSignal(report);
  });
}

}  // namespace serve
