#ifndef SERVE_SOCKET_PATH_H
#define SERVE_SOCKET_PATH_H

#include <string>

namespace serve {

/// Where a card's control socket is that nobody named: softcard.sock in the user's folder for such things. Throws
/// std::runtime_error when the user has none.
std::string DefaultSocket();

/// Throws std::runtime_error when a socket's path is longer than the system takes.
void CheckLength(const std::string& path);

}  // namespace serve

#endif
