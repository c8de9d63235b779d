#include "serve/SocketPath.h"

#include <sys/un.h>

#include <cstdlib>
#include <stdexcept>

#include "scenario/Suggestion.h"

namespace serve {

std::string DefaultSocket() {
  const char* const folder = std::getenv("XDG_RUNTIME_DIR");
  if (folder == nullptr || *folder == '\0') {
    throw std::runtime_error("XDG_RUNTIME_DIR names no folder for the control socket; name the socket yourself");
  }
  return std::string(folder) + "/softcard.sock";
}

void CheckLength(const std::string& path) {
  constexpr std::size_t kMost = sizeof(sockaddr_un::sun_path) - 1;
  if (path.size() <= kMost) return;
  throw std::runtime_error("the path of a socket has at most " + std::to_string(kMost) + " bytes, and this one has " +
                           std::to_string(path.size()) + ": " + scenario::Printable(path) + "; name a shorter one");
}

}  // namespace serve
