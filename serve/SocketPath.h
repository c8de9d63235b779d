#ifndef SERVE_SOCKET_PATH_H
#define SERVE_SOCKET_PATH_H

#include <string>

namespace serve {

/// Where a card's control socket is that nobody named: softcard.sock in $XDG_RUNTIME_DIR, else in /run/user/UID, root's
/// in /run. Throws std::runtime_error when there is no such folder; `option` is the one that names a socket.
std::string DefaultSocket(const std::string& option);

/// Throws std::runtime_error when a socket's path is longer than the system takes.
void CheckLength(const std::string& path);

}  // namespace serve

#endif
