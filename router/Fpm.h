#ifndef ROUTER_FPM_H
#define ROUTER_FPM_H

#include <cstddef>
#include <functional>

/// The stream of a forwarding plane manager: netlink messages in frames of their own.
namespace router {

/// Of a frame with its header, whose length has 16 bits.
constexpr std::size_t kLongestFrame = 65535;

/// Hands on what each whole frame at the beginning of `data` carries. How many bytes these frames were: what is behind
/// them is the beginning of one that has not come whole yet. Throws std::runtime_error for what is no such stream.
std::size_t ReadFrames(const unsigned char* data, std::size_t size,
                       const std::function<void(const unsigned char* messages, std::size_t size)>& each);

}  // namespace router

#endif
