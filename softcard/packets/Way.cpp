#include "softcard/packets/Way.h"

#include "softcard/packets/Walk.h"

namespace softcard {

Way Inject(const Tables& tables, const Records& records, int port, View frame, Bytes* out, Story* story) {
  Walk walk(tables, records, frame, out, story);
  walk.FromWire(port);
  return walk.way();
}

Way Send(const Tables& tables, const Records& records, unsigned destination, Carried carried, View bytes, Bytes* out,
         Story* story) {
  Walk walk(tables, records, bytes, out, story);
  const auto parse = [&] {
    switch (carried) {
      case Carried::kLabels: return ParseLabelled(bytes);
      case Carried::kEthernet: return ParseEthernet(bytes);
      case Carried::kIp: break;
    }
    return ParseIp(bytes);
  };
  std::optional<Packet> packet = parse();
  if (packet) {
    walk.ToDestination(destination, *packet);
  } else {
    walk.Malformed("the packet is not whole");
  }
  return walk.way();
}

}  // namespace softcard
