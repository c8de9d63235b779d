#include "serve/Connection.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <sstream>
#include <stdexcept>

#include "scenario/Suggestion.h"
#include "scenario/Tokens.h"
#include "serve/SocketPath.h"

namespace serve {
namespace {

constexpr timeval kPatience{60, 0};

int Connect(const std::string& path) {
  CheckLength(path);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, path.size());
  const int made = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (made < 0) throw std::runtime_error(std::string("cannot make a socket: ") + std::strerror(errno));
  setsockopt(made, SOL_SOCKET, SO_RCVTIMEO, &kPatience, sizeof kPatience);
  setsockopt(made, SOL_SOCKET, SO_SNDTIMEO, &kPatience, sizeof kPatience);
  if (connect(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return made;
  const int reason = errno;
  close(made);
  if (reason == EACCES) {
    throw std::runtime_error("the socket " + scenario::Printable(path) +
                             " is another user's: " + std::strerror(reason) + "; ask as the user who serves the card");
  }
  throw std::runtime_error("no card answers at " + scenario::Printable(path) + ": " + std::strerror(reason) +
                           "; start one with softcard serve, or name its socket");
}

}  // namespace

Connection::Connection(const std::string& path, const std::string& format_name, const Formats& formats)
    : path_(path), formats_(formats), format_(*formats.at(format_name)), socket_(Connect(path)) {
  std::ostringstream said;
  const auto refuse = [&](const std::string& reason) {
    close(socket_);
    throw std::runtime_error(reason);
  };
  try {
    if (Exchange(format_name, [&said](std::string_view line) { said << line; }) == Ending::kDone) return;
  } catch (const std::runtime_error& error) {
    if (said.str().empty()) refuse(error.what());
  }
  refuse("the card at " + path_ + " says: " + said.str().substr(0, said.str().find('\n')));
}

Connection::~Connection() { close(socket_); }

Ending Connection::Ask(const std::string& line, const std::function<void(std::string_view)>& each) {
  if (const std::string word(scenario::Trim(line)); !more_ && formats_.count(word) > 0) {
    scenario::Answer refusal;
    refusal.error = '"' + word +
                    "\" is no statement: it chooses how answers are written, which is settled before the " +
                    "first one; softcard ctl --json has them as JSON";
    each(format_.Refusal(refusal));
    return Ending::kUnusable;
  }
  const Ending ending = Exchange(line, each);
  more_ = ending == Ending::kMore;
  return ending;
}

Ending Connection::Exchange(const std::string& line, const std::function<void(std::string_view)>& each) {
  Send(line + '\n');
  for (;;) {
    const std::string answer = NextLine();
    for (const Ending ending : {Ending::kDone, Ending::kFailed, Ending::kUnusable, Ending::kMore}) {
      if (answer == format_.Last(ending)) return ending;
    }
    each(answer);
  }
}

void Connection::Send(std::string_view text) {
  while (!text.empty()) {
    const ssize_t size = send(socket_, text.data(), text.size(), MSG_NOSIGNAL);
    if (size < 0 && errno == EINTR) continue;
    // What it has said before it left is to be read.
    if (size < 0 && errno == EPIPE) return;
    if (size < 0) throw std::runtime_error("the card at " + path_ + " does not listen: " + std::strerror(errno));
    text.remove_prefix(static_cast<std::size_t>(size));
  }
}

std::string Connection::NextLine() {
  std::size_t searched = 0;
  for (;;) {
    if (const std::size_t end = received_.find('\n', searched); end != std::string::npos) {
      std::string line = received_.substr(0, end + 1);
      received_.erase(0, end + 1);
      return line;
    }
    searched = received_.size();
    std::array<char, 65536> buffer;
    const ssize_t size = recv(socket_, buffer.data(), buffer.size(), 0);
    if (size < 0 && errno == EINTR) continue;
    if (size <= 0) {
      throw std::runtime_error("the card at " + path_ + " left before its answer's end: " +
                               (size == 0 ? "it has been ended" : std::strerror(errno)));
    }
    received_.append(buffer.data(), static_cast<std::size_t>(size));
  }
}

}  // namespace serve
