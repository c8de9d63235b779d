#ifndef ROUTER_NETLINK_H
#define ROUTER_NETLINK_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "router/Told.h"

namespace router {

/// What came and was not told on.
struct Unread {
  std::uint64_t ignored = 0;    ///< messages about other things than routes, labels and next hops
  std::uint64_t malformed = 0;  ///< messages whose lengths lie, or that lack what they are about
};

/// Reads the netlink messages of a frame, in this machine's byte order, in their order behind those of `told`. Nothing
/// behind a message whose length lies can be read.
void ReadMessages(const unsigned char* data, std::size_t size, std::vector<Told>* told, Unread* unread);

}  // namespace router

#endif
