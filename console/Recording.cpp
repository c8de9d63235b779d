#include "console/Recording.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <system_error>

namespace console {
namespace {

/// A second name, under which a file stays as it is.
std::string Kept(const std::string& path) { return path + ".kept"; }

}  // namespace

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

OlderRecordings::~OlderRecordings() {
  std::error_code none;
  for (const std::string& path : paths_) {
    std::filesystem::remove(path, none);
    std::filesystem::rename(Kept(path), path, none);
  }
}

void OlderRecordings::Keep(const std::string& path) {
  // What is no file the recorder leaves where it is.
  if (path.rfind("/dev/", 0) == 0) return;
  for (const std::string& each : {path, path + ".1"}) {
    std::error_code error;
    std::filesystem::remove(Kept(each), error);
    if (std::filesystem::exists(std::filesystem::symlink_status(each))) {
      std::filesystem::create_hard_link(each, Kept(each), error);
    }
    if (error) throw std::runtime_error("cannot keep " + each + ": " + error.message() + "; name another file");
    paths_.push_back(each);
  }
}

void OlderRecordings::StartSucceeded() {
  std::error_code none;
  for (const std::string& path : paths_) std::filesystem::remove(Kept(path), none);
  paths_.clear();
}

}  // namespace console
