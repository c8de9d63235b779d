#ifndef SERVE_CONTROL_SOCKET_H
#define SERVE_CONTROL_SOCKET_H

#include <sys/types.h>

#include <asio/io_context.hpp>
#include <asio/local/stream_protocol.hpp>
#include <asio/steady_timer.hpp>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "serve/Conversation.h"

namespace serve {

/// A UNIX socket of mode 0600 on which clients have conversations with the card, many at once. Of each client no more
/// is kept than a line and an answer: who does not read is not read from, and who says a line that is too long is told
/// so and left.
class ControlSocket {
 public:
  static constexpr std::size_t kLongestLine = scenario::Collector::kMost;
  static constexpr unsigned kMostClients = 64;

  using NewConversation = std::function<std::unique_ptr<Conversation>(const std::string& client)>;

  /// Replaces the socket that a card has left behind. Throws std::runtime_error when a living one has it, or when it
  /// cannot be made there.
  ControlSocket(asio::io_context& events, std::string path, NewConversation begin);
  /// Takes the socket away.
  ~ControlSocket();
  ControlSocket(const ControlSocket&) = delete;
  ControlSocket& operator=(const ControlSocket&) = delete;

 private:
  using Stream = asio::local::stream_protocol;
  class Client;

  void Listen();
  void Accept();
  void Take(Stream::socket socket);

  asio::io_context& events_;
  const std::string path_;
  const NewConversation begin_;
  Stream::acceptor acceptor_;
  asio::steady_timer pause_;  ///< while no more can be accepted
  ino_t inode_ = 0;           ///< of the socket's file, which may be another's by the end
  unsigned long accepted_ = 0;
  const std::shared_ptr<unsigned> clients_ = std::make_shared<unsigned>(0);  ///< that are connected
};

}  // namespace serve

#endif
