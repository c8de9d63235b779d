#ifndef ROUTER_TOLD_H
#define ROUTER_TOLD_H

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "softcard/tables/Prefix.h"

/// What a control plane tells, as values.
namespace router {

/// A label stack, outermost first, as control planes list it.
using Labels = std::vector<unsigned>;
constexpr unsigned kExplicitNull = 0, kImplicitNull = 3;

/// One way that packets may go.
struct Way {
  enum class Kind : unsigned char {
    kDeliver,    ///< to the gateway or, without one, to whoever has the address; an incoming label is popped
    kPush,       ///< the labels on top of the packet, and to the gateway
    kSwap,       ///< the labels in the place of an incoming one, and to the gateway
    kPopVrf,     ///< an incoming label is popped, and the packet routed in the VRF whose device the interface is
    kProcessor,  ///< to the route processor, which answers for what it does not forward
    kDrop,
    kUnknown,  ///< something that nothing here has a name for
  };

  Kind kind = Kind::kUnknown;
  unsigned ifindex = 0;
  std::optional<softcard::IpAddress> gateway{};
  Labels labels{};
};

bool operator==(const Way& one, const Way& other);

/// Several: equal paths.
using Ways = std::vector<Way>;

struct Hash {
  std::size_t operator()(const Ways& ways) const;
  std::size_t operator()(const Way& way) const;
};

/// "push 17/500 to 192.0.2.1 on interface 3", "drop".
std::string Text(const Way& way);
std::string Text(const Ways& ways);
std::string Text(const Labels& labels);  ///< "17/500"
const char* Name(Way::Kind kind);        ///< "push"

struct RouteTold {
  bool gone = false;
  std::uint32_t table = 0;  ///< of the control plane's routing tables
  softcard::Prefix prefix{};
  std::uint32_t next_hop = 0;  ///< the next-hop object's id; 0: `ways`
  Ways ways{};
};

struct LabelTold {
  bool gone = false;
  unsigned label = 0;
  Ways ways{};
};

struct NextHopTold {
  bool gone = false;
  std::uint32_t id = 0;
  Ways ways{};
  std::vector<std::uint32_t> members{};  ///< of a group, which has no ways of its own
};

using Told = std::variant<RouteTold, LabelTold, NextHopTold>;

}  // namespace router

#endif
