#ifndef SERVE_CONNECTION_H
#define SERVE_CONNECTION_H

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "serve/Format.h"

namespace serve {

/// A client's side of a control socket.
class Connection {
 public:
  /// Chooses one of the formats, by which it knows the last lines of answers; they outlive it. Throws
  /// std::runtime_error with the reason and the remedy when no card answers there.
  Connection(const std::string& path, const std::string& format_name, const Formats& formats);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Says a line, without its end, and hands on each line of the answer, with its end, but for the last one. Waits for
  /// a minute at most when nothing comes. A line that would choose another format is not said, and answered as
  /// unusable. Throws std::runtime_error when the card does not answer to the end.
  Ending Ask(const std::string& line, const std::function<void(std::string_view)>& each);

 private:
  Ending Exchange(const std::string& line, const std::function<void(std::string_view)>& each);
  void Send(std::string_view text);
  std::string NextLine();

  const std::string path_;
  const Formats& formats_;
  const Format& format_;
  int socket_ = -1;
  bool more_ = false;  ///< the lines so far have begun something
  std::string received_;
};

}  // namespace serve

#endif
