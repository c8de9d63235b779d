#ifndef SERVE_SERVER_H
#define SERVE_SERVER_H

#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include "serve/ControlPlane.h"
#include "serve/ControlSocket.h"
#include "serve/Ports.h"

namespace serve {

/// A card that lives: an event loop, on one thread, with everything that asks the card or sends through it.
class Server {
 public:
  struct Settings {
    std::string socket{};  ///< where clients find it
    Bindings ports{};      ///< on network interfaces
    Bindings hosts{};      ///< the route processor's side of ports
    Ports::Capture capture{};
    std::string fpm{};  ///< where a control plane finds it; empty: nowhere
    std::chrono::seconds quiet{};
  };

  /// Throws std::runtime_error with the reason and the remedy when something cannot be opened; nothing stays behind.
  Server(const Settings& settings, scenario::Session& session, const scenario::Language& language,
         const Formats& formats, softcard::Card& card, const Living& living, Ports::Say say);

  /// Lives until SIGTERM, SIGINT or, unless it was ignored at the beginning, SIGHUP. `report` is called on SIGUSR1.
  void Run(const std::function<void()>& report);

  const Ports& ports() const { return ports_; }
  /// Null when none is waited for.
  ControlPlane* control_plane() { return control_plane_ ? &*control_plane_ : nullptr; }

 private:
  void WaitForSignal(const std::function<void()>& report);

  asio::io_context events_{1};
  asio::signal_set signals_;
  Ports ports_;
  std::optional<ControlPlane> control_plane_;
  ControlSocket control_;
};

}  // namespace serve

#endif
