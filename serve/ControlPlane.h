#ifndef SERVE_CONTROL_PLANE_H
#define SERVE_CONTROL_PLANE_H

#include <array>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "router/Netlink.h"
#include "router/Router.h"

namespace serve {

/// Where a control plane's forwarding plane manager connects to, one peer at a time. What a peer has told stays when it
/// goes; the next one tells everything again, and what is not among that goes after a quiet time.
class ControlPlane {
 public:
  using Say = std::function<void(const std::string&)>;

  /// `address`: "127.0.0.1:2620", "[::1]:2620", or a port alone, which is one of the loopback's. Throws
  /// std::runtime_error with the reason and the remedy when nobody can be waited for there.
  ControlPlane(asio::io_context& events, const std::string& address, std::chrono::seconds quiet, router::Router& router,
               Say say);

  /// Something has changed on the card, other than by the router: what was refused is asked for again, a little later.
  void CardChanged();

  /// One row: who has told what.
  std::vector<softcard::Row> Rows() const;

 private:
  using Tcp = asio::ip::tcp;

  void Accept();
  void Take(Tcp::socket socket);
  void Read();
  void Parse();
  void Leave(const std::string& why);
  void WaitForQuiet();

  router::Router& router_;
  const Say say_;
  const std::chrono::seconds quiet_;
  Tcp::acceptor acceptor_;
  Tcp::socket peer_;
  Tcp::socket next_;  ///< who came when the peer had ended and not all of it was read
  asio::steady_timer sweep_;
  asio::steady_timer pause_;  ///< while no more can be accepted
  std::string peer_name_;
  std::vector<unsigned char> received_;
  std::size_t filled_ = 0;
  std::vector<router::Told> told_;  ///< of a frame
  router::Unread unread_;
  std::uint64_t peers_ = 0;
  std::uint64_t messages_ = 0;
  std::uint64_t sweeps_ = 0;
  bool has_told_ = false;  ///< the peer, something
  bool sweep_is_due_ = false;
  bool settle_is_due_ = false;
};

}  // namespace serve

#endif
