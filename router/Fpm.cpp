#include "router/Fpm.h"

#include <stdexcept>
#include <string>

namespace router {
namespace {

constexpr unsigned kVersion = 1;
constexpr unsigned kNetlink = 1;  // the kind of messages
constexpr std::size_t kHeader = 4;

}  // namespace

std::size_t ReadFrames(const unsigned char* data, std::size_t size,
                       const std::function<void(const unsigned char*, std::size_t)>& each) {
  std::size_t at = 0;
  while (size - at >= kHeader) {
    const unsigned char* const frame = data + at;
    if (frame[0] != kVersion || frame[1] != kNetlink) {
      throw std::runtime_error("a frame of version " + std::to_string(frame[0]) + " and kind " +
                               std::to_string(frame[1]) + "; known are netlink frames, of version 1 and kind 1");
    }
    const std::size_t length = static_cast<std::size_t>(frame[2]) << 8 | frame[3];
    if (length < kHeader) {
      throw std::runtime_error("a frame of " + std::to_string(length) + " bytes, which is less than its header");
    }
    if (length > size - at) break;
    each(frame + kHeader, length - kHeader);
    at += length;
  }
  return at;
}

}  // namespace router
