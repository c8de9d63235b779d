#include "softcard/packets/Way.h"

#include "softcard/packets/Walk.h"

namespace softcard {

Way Inject(const Tables& tables, const Records& records, int port, View frame, Bytes* out, Story* story) {
  return Walk(tables, records, frame, out, story).FromWire(port);
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
  const std::optional<Packet> packet = parse();
  return packet ? walk.ToDestination(destination, *packet) : walk.Malformed("the packet is not whole");
}

}  // namespace softcard
