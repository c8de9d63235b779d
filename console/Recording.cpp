#include "console/Recording.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>

namespace console {

bool RecordInto(const std::string& path) {
  const auto folder = std::filesystem::absolute(path).parent_path();
  if (access(path.c_str(), W_OK) != 0 && (errno != ENOENT || access(folder.c_str(), W_OK) != 0)) {
    std::cerr << "softcard: cannot write " << path << ": " << std::strerror(errno) << "; name another file\n";
    return false;
  }
  // The recorder looks when the module is first asked for.
  return setenv("HAL_CARD_RECORDING", path.c_str(), 1) == 0;
}

}  // namespace console
