#include "serve/ControlSocket.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <asio/write.hpp>
#include <chrono>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "scenario/Suggestion.h"
#include "serve/SocketPath.h"

namespace serve {

/// Lives for as long as something of it is under way: a read, or the write of an answer.
class ControlSocket::Client : public std::enable_shared_from_this<Client> {
 public:
  Client(Stream::socket socket, std::unique_ptr<Conversation> conversation, std::shared_ptr<unsigned> clients)
      : socket_(std::move(socket)), conversation_(std::move(conversation)), clients_(std::move(clients)) {
    ++*clients_;
  }
  ~Client() { --*clients_; }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  /// Answers the lines that have come, and reads on when there is none.
  void GoOn() {
    // Others have their turn before a client has had so much.
    constexpr std::size_t kMostAtOnce = 16 << 10;
    out_.clear();
    std::size_t begin = 0;
    while (out_.size() < kMostAtOnce) {
      const std::size_t end = in_.find('\n', std::max(begin, searched_));
      if (end == std::string::npos) break;
      std::string_view line(in_.data() + begin, end - begin);
      if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
      out_ += conversation_->Answer(line);
      begin = searched_ = end + 1;
    }
    in_.erase(0, begin);
    searched_ = out_.size() < kMostAtOnce ? in_.size() : 0;
    if (out_.empty() && in_.size() > kLongestLine) {
      Leave(conversation_->Refusal("a line has more than " + std::to_string(kLongestLine >> 20) + " MiB"));
    } else if (out_.empty() && ended_) {
      if (!in_.empty()) Leave(conversation_->Answer(std::exchange(in_, {})));
    } else if (out_.empty()) {
      Read();
    } else {
      Write([self = shared_from_this()] { self->GoOn(); });
    }
  }

  void Leave(std::string last_words) {
    out_ = std::move(last_words);
    Write([self = shared_from_this()] {});
  }

 private:
  void Read() {
    socket_.async_read_some(asio::buffer(buffer_),
                            [self = shared_from_this()](std::error_code error, std::size_t size) {
                              if (error && error != asio::error::eof) return;
                              self->ended_ = error == asio::error::eof;
                              self->in_.append(self->buffer_.data(), size);
                              self->GoOn();
                            });
  }

  template <typename Then>
  void Write(Then then) {
    asio::async_write(socket_, asio::buffer(out_), [then = std::move(then)](std::error_code error, std::size_t) {
      if (!error) then();
    });
  }

  Stream::socket socket_;
  const std::unique_ptr<Conversation> conversation_;
  const std::shared_ptr<unsigned> clients_;
  std::array<char, 16384> buffer_{};
  std::string in_;
  std::size_t searched_ = 0;  ///< of what came in: no line ends there
  bool ended_ = false;        ///< the client says no more
  std::string out_;           ///< what is being written
};

namespace {

[[noreturn]] void CannotMake(const std::string& path, const std::string& reason) {
  throw std::runtime_error("cannot make the control socket " + scenario::Printable(path) + ": " + reason);
}

}  // namespace

ControlSocket::ControlSocket(asio::io_context& events, std::string path, NewConversation begin)
    : events_(events), path_(std::move(path)), begin_(std::move(begin)), acceptor_(events), pause_(events) {
  CheckLength(path_);
  struct stat file {};
  if (lstat(path_.c_str(), &file) == 0) {
    if (!S_ISSOCK(file.st_mode)) CannotMake(path_, "there is a file that is no socket; name another path");
    std::error_code refused;
    Stream::socket(events_).connect(Stream::endpoint(path_), refused);
    if (refused != asio::error::connection_refused) {
      CannotMake(path_, refused ? refused.message() + "; name another path"
                                : "a card that is running has it; name another path, or end that card");
    }
    unlink(path_.c_str());
  }
  Listen();
  Accept();
}

void ControlSocket::Listen() {
  std::error_code error;
  acceptor_.open(Stream(), error);
  if (!error) {
    const mode_t mask = umask(0177);
    acceptor_.bind(Stream::endpoint(path_), error);
    umask(mask);
  }
  if (!error) acceptor_.listen(asio::socket_base::max_listen_connections, error);
  if (error) CannotMake(path_, error.message() + "; name a path in a folder that exists and may be written");
  struct stat file {};
  if (lstat(path_.c_str(), &file) == 0) inode_ = file.st_ino;
}

ControlSocket::~ControlSocket() {
  struct stat file {};
  if (lstat(path_.c_str(), &file) == 0 && file.st_ino == inode_) unlink(path_.c_str());
}

void ControlSocket::Accept() {
  acceptor_.async_accept([this](std::error_code error, Stream::socket socket) {
    if (error == asio::error::operation_aborted) return;
    if (!error) {
      Take(std::move(socket));
      return Accept();
    }
    // The process has as many files open as it may: somebody has to leave first.
    pause_.expires_after(std::chrono::milliseconds(100));
    pause_.async_wait([this](std::error_code aborted) {
      if (!aborted) Accept();
    });
  });
}

void ControlSocket::Take(Stream::socket socket) {
  const bool too_many = *clients_ >= kMostClients;
  auto conversation = begin_("client " + std::to_string(++accepted_));
  const std::string refusal = conversation->Refusal(std::to_string(kMostClients) + " clients are connected already");
  if (too_many) {
    std::error_code ignored;
    socket.non_blocking(true, ignored);
    socket.write_some(asio::buffer(refusal), ignored);
    return;
  }
  std::make_shared<Client>(std::move(socket), std::move(conversation), clients_)->GoOn();
}

}  // namespace serve
