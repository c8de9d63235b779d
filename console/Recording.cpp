#include "console/Recording.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <system_error>

namespace console {

bool RecordInto(const std::string& path) {
  std::error_code none;
  const bool is_new = !std::filesystem::exists(std::filesystem::symlink_status(path, none));
  // As the recorder will, but that nothing is lost.
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  if (file < 0) {
    std::cerr << "softcard: cannot write " << path << ": " << std::strerror(errno) << "; name another file\n";
    return false;
  }
  close(file);
  if (is_new) std::filesystem::remove(path, none);
  // The recorder looks when the module is first asked for.
  return setenv("HAL_CARD_RECORDING", path.c_str(), 1) == 0;
}

}  // namespace console
