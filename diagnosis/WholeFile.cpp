#include "diagnosis/WholeFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace diagnosis {

void WriteWhole(const std::string& path, std::string_view content) {
  const std::string part = path + ".part";
  errno = 0;
  std::FILE* const file = std::fopen(part.c_str(), "wb");
  bool good = file != nullptr;
  if (good) {
    good = std::fwrite(content.data(), 1, content.size(), file) == content.size();
    good = std::fclose(file) == 0 && good;
    good = good && std::rename(part.c_str(), path.c_str()) == 0;
  }
  if (good) return;
  const std::string reason = std::strerror(errno);
  if (file != nullptr) std::remove(part.c_str());
  throw std::runtime_error("cannot write " + path + ": " + reason +
                           "; name a file in a folder that exists, may be written and has room");
}

}  // namespace diagnosis
