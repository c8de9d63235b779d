#include "serve/SocketPath.h"

#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "scenario/Suggestion.h"

namespace serve {

std::string DefaultSocket(const std::string& option) {
  constexpr char kName[] = "/softcard.sock";
  const char* const named = std::getenv("XDG_RUNTIME_DIR");
  if (named != nullptr && *named != '\0') return std::string(named) + kName;
  const std::string folder = getuid() == 0 ? "/run" : "/run/user/" + std::to_string(getuid());
  if (std::filesystem::is_directory(folder)) return folder + kName;
  throw std::runtime_error("there is no folder for the control socket: XDG_RUNTIME_DIR names none, and there is no " +
                           folder + "; name the socket with " + option);
}

void CheckLength(const std::string& path) {
  constexpr std::size_t kMost = sizeof(sockaddr_un::sun_path) - 1;
  if (path.size() <= kMost) return;
  throw std::runtime_error("the path of a socket has at most " + std::to_string(kMost) + " bytes, and this one has " +
                           std::to_string(path.size()) + ": " + scenario::Printable(path) + "; name a shorter one");
}

}  // namespace serve
