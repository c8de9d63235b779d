#ifndef SERVE_PORTS_H
#define SERVE_PORTS_H

#include <asio/io_context.hpp>
#include <asio/posix/stream_descriptor.hpp>
#include <asio/steady_timer.hpp>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "serve/Forwarder.h"
#include "serve/Interface.h"
#include "serve/Statements.h"
#include "softcard/Card.h"

namespace serve {

/// Which interface is which port's, "eth1" and "veth0", or that port's on the route processor's side.
using Bindings = std::vector<std::pair<std::string, std::string>>;

/// The card's ports on network interfaces. A frame that comes in takes the card's way, and what leaves is sent by the
/// port that it leaves by. What is for the route processor goes to the port's twin there, and what comes from the twin
/// leaves by the port, both as they are on the wire.
class Ports : private Forwarder::Wires {
 public:
  using Say = std::function<void(const std::string&)>;
  /// Shown each frame of a port, "eth1", as it is on the wire, coming and leaving; whether it has been kept.
  using Capture = std::function<bool(const std::string& port, softcard::View frame)>;

  /// `say` is told when an interface goes down or away, and when it comes back; an empty `capture` is none. Throws
  /// std::runtime_error with the reason and the remedy for what cannot be bound.
  Ports(asio::io_context& events, softcard::Card& card, const Living& living, const Bindings& ports,
        const Bindings& hosts, Say say, Capture capture = {});

  /// Each interface with its counters; frames for ports without an interface are counted, too.
  std::vector<softcard::Row> Rows() const;

 private:
  struct Side {
    Side(asio::io_context& events, std::string shown_name, const std::string& interface_name)
        : name(std::move(shown_name)), interface(interface_name), events_of(events, interface.descriptor()) {}
    ~Side() { Release(); }
    Side(const Side&) = delete;
    Side& operator=(const Side&) = delete;
    /// The interface closes its descriptor itself.
    void Release() {
      if (events_of.is_open()) events_of.release();
    }

    const std::string name;  ///< "eth1", "eth1 host"
    Interface interface;
    asio::posix::stream_descriptor events_of;
    std::function<void(softcard::View)> take{};
    bool waits = false;  ///< for frames
  };

  Side& Bind(asio::io_context& events, const std::string& name, const std::string& interface_name);
  void Wait(Side& side);
  void Read(Side& side);
  void LookAgain();
  bool HasHost(int port) const override;
  void ToHost(int port, softcard::View frame) override;
  void ToPort(int port, softcard::View frame) override;
  void Send(Side& side, softcard::View frame);
  void Show(const Side& side, softcard::View frame);

  Forwarder forwarder_;
  const Say say_;
  const Capture capture_;
  asio::steady_timer look_;
  std::deque<Side> sides_;
  std::map<int, Side*> ports_;
  std::map<int, Side*> hosts_;
  std::uint64_t unbound_ = 0;     ///< frames for ports without an interface
  std::uint64_t uncaptured_ = 0;  ///< frames that could not be kept
};

}  // namespace serve

#endif
