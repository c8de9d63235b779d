#include "serve/ControlPlane.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <algorithm>
#include <asio/buffer.hpp>
#include <asio/post.hpp>
#include <asio/socket_base.hpp>
#include <asio/write.hpp>
#include <charconv>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "router/Fpm.h"
#include "scenario/Suggestion.h"

namespace serve {
namespace {

using Tcp = asio::ip::tcp;

constexpr std::chrono::milliseconds kPause{100};
constexpr std::size_t kBuffer = std::size_t{4} * router::kLongestFrame;

const softcard::TableDescription kDescription = {"control-plane",
                                                 "control-plane",
                                                 softcard::Origin::kCounted,
                                                 {"peer", calls::Kind::kText},
                                                 {{"peers", calls::Kind::kNumber},
                                                  {"messages", calls::Kind::kNumber},
                                                  {"ignored", calls::Kind::kNumber},
                                                  {"malformed", calls::Kind::kNumber},
                                                  {"routes", calls::Kind::kNumber},
                                                  {"labels", calls::Kind::kNumber},
                                                  {"requests", calls::Kind::kNumber},
                                                  {"sweeps", calls::Kind::kNumber}}};

Tcp::endpoint ToEndpoint(const std::string& text) {
  const auto unusable = [&text] {
    return std::runtime_error("--fpm takes ADDRESS:PORT, such as 127.0.0.1:2620, or [::1]:2620, or a port alone; " +
                              scenario::Quoted(text) + " does not fit");
  };
  const std::size_t colon = text.rfind(':');
  std::string host = colon == std::string::npos ? "127.0.0.1" : text.substr(0, colon);
  const std::string number = colon == std::string::npos ? text : text.substr(colon + 1);
  if (host.size() > 2 && host.front() == '[' && host.back() == ']') host = host.substr(1, host.size() - 2);
  unsigned short port = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), port);
  if (error != std::errc() || end != number.data() + number.size()) throw unusable();
  std::error_code no_address;
  const auto address = asio::ip::make_address(host, no_address);
  if (no_address) throw unusable();
  return {address, port};
}

std::string Text(const Tcp::endpoint& endpoint) {
  const std::string address = endpoint.address().to_string();
  return (endpoint.address().is_v6() ? '[' + address + ']' : address) + ':' + std::to_string(endpoint.port());
}

/// A peer whose machine has gone without a word is missed in half a minute.
void KeepAlive(Tcp::socket& socket) {
  constexpr std::pair<int, int> kOptions[] = {{TCP_KEEPIDLE, 10}, {TCP_KEEPINTVL, 5}, {TCP_KEEPCNT, 4}};
  std::error_code ignored;
  socket.set_option(asio::socket_base::keep_alive(true), ignored);
  for (const auto& [name, value] : kOptions) {
    setsockopt(socket.native_handle(), IPPROTO_TCP, name, &value, sizeof value);
  }
}

/// Whether the other side has ended the connection, of which not all may have been read.
bool HasEnded(Tcp::socket& socket) {
  tcp_info info{};
  socklen_t size = sizeof info;
  return getsockopt(socket.native_handle(), IPPROTO_TCP, TCP_INFO, &info, &size) != 0 ||
         info.tcpi_state != TCP_ESTABLISHED;
}

}  // namespace

ControlPlane::ControlPlane(asio::io_context& events, const std::string& address, std::chrono::seconds quiet,
                           router::Router& router, Say say)
    : router_(router),
      say_(std::move(say)),
      quiet_(quiet),
      acceptor_(events),
      peer_(events),
      next_(events),
      sweep_(events),
      pause_(events),
      received_(kBuffer) {
  const Tcp::endpoint endpoint = ToEndpoint(address);
  try {
    acceptor_.open(endpoint.protocol());
    acceptor_.set_option(asio::socket_base::reuse_address(true));
    acceptor_.bind(endpoint);
    acceptor_.listen();
  } catch (const std::system_error& error) {
    throw std::runtime_error("cannot wait for a control plane at " + Text(endpoint) + ": " + error.code().message() +
                             "; is there another one, or is the address not this machine's?");
  }
  Accept();
}

void ControlPlane::Accept() {
  acceptor_.async_accept([this](std::error_code error, Tcp::socket socket) {
    if (error == asio::error::operation_aborted) return;
    if (!error) {
      Take(std::move(socket));
      if (!next_.is_open()) Accept();
      return;
    }
    // There is no descriptor left, for instance; others may be given back.
    pause_.expires_after(kPause);
    pause_.async_wait([this](std::error_code stopped) {
      if (!stopped) Accept();
    });
  });
}

void ControlPlane::Take(Tcp::socket socket) {
  std::error_code error;
  const Tcp::endpoint from = socket.remote_endpoint(error);
  if (error) return;  // it has gone already
  const std::string name = Text(from);
  if (peer_.is_open() && HasEnded(peer_)) {
    next_ = std::move(socket);  // it waits until the rest of the other's words are read
    return;
  }
  if (peer_.is_open()) {
    say_("control plane " + name + " is turned away: " + peer_name_ + " is connected");
    asio::write(socket, asio::buffer("softcard: " + peer_name_ + " is connected, and there is one at a time\n"), error);
    return;
  }
  say_("control plane " + name + " is connected");
  peer_ = std::move(socket);
  KeepAlive(peer_);
  peer_name_ = name;
  ++peers_;
  filled_ = 0;
  has_told_ = false;
  Read();
}

void ControlPlane::Read() {
  peer_.async_read_some(asio::buffer(received_.data() + filled_, received_.size() - filled_),
                        [this](std::error_code error, std::size_t size) {
                          if (error == asio::error::operation_aborted) return;
                          if (error) return Leave(error == asio::error::eof ? "" : ": " + error.message());
                          filled_ += size;
                          Parse();
                        });
}

void ControlPlane::Parse() try {
  const auto each = [this](const unsigned char* messages, std::size_t size) {
    // Who says nothing takes nothing away.
    if (!std::exchange(has_told_, true)) {
      router_.Begin();
      sweep_is_due_ = true;
    }
    told_.clear();
    router::ReadMessages(messages, size, &told_, &unread_);
    messages_ += told_.size();
    router_.Hear(told_);
  };
  const std::size_t taken = router::ReadFrames(received_.data(), filled_, each);
  std::copy(received_.data() + taken, received_.data() + filled_, received_.data());
  filled_ -= taken;
  router_.Settle();
  if (sweep_is_due_) WaitForQuiet();
  Read();
} catch (const std::runtime_error& error) {
  router_.Settle();
  Leave(std::string(": it sent ") + error.what());
}

/// What it has told stays.
void ControlPlane::Leave(const std::string& why) {
  std::error_code ignored;
  peer_.close(ignored);
  say_("control plane " + peer_name_ + " has gone" + why);
  sweep_is_due_ = false;
  sweep_.cancel();
  if (!next_.is_open()) return;
  Take(std::exchange(next_, Tcp::socket(next_.get_executor())));
  Accept();
}

void ControlPlane::WaitForQuiet() {
  sweep_.expires_after(quiet_);
  sweep_.async_wait([this](std::error_code error) {
    // It may have been put off, or given up, since it was due.
    if (error || !sweep_is_due_ || sweep_.expiry() > std::chrono::steady_clock::now()) return;
    if (filled_ > 0) return WaitForQuiet();  // it is in the middle of a word
    sweep_is_due_ = false;
    ++sweeps_;
    router_.Sweep();
  });
}

void ControlPlane::CardChanged() {
  router_.MayHelp();
  if (std::exchange(settle_is_due_, true)) return;
  asio::post(acceptor_.get_executor(), [this] {
    settle_is_due_ = false;
    router_.Settle();
  });
}

std::vector<softcard::Row> ControlPlane::Rows() const {
  return {{&kDescription,
           calls::ToValue(peer_.is_open() ? peer_name_ : "none"),
           {calls::ToValue(peers_), calls::ToValue(messages_), calls::ToValue(unread_.ignored),
            calls::ToValue(unread_.malformed), calls::ToValue(router_.route_count()),
            calls::ToValue(router_.label_count()), calls::ToValue(router_.requests()), calls::ToValue(sweeps_)}}};
}

}  // namespace serve
