#include "softcard/packets/Way.h"

#include "softcard/packets/Walk.h"

namespace softcard {

Way Inject(const Tables& tables, const Records& records, int port, View frame, Bytes* out, Story* story) {
  Way way;
  Walk(tables, records, frame, out, &way, story).FromWire(port);
  return way;
}

void Prefetch(const Tables& tables, View frame) {
  constexpr std::size_t kIpAt = kEthernetBytes + kTagBytes;
  const bool is_tagged = frame.size >= kIpAt + kIpv6Bytes && Get16(frame.data + 2 * kMacBytes) == kEtherTypeVlan;
  const unsigned* const vrf =
      is_tagged ? tables.associations.Find(Get16(frame.data + kEthernetBytes) & kVlanBits) : nullptr;
  if (!vrf) return;
  const unsigned char* const ip = frame.data + kIpAt;
  const unsigned type = Get16(ip - 2);
  if (type == kEtherTypeIpv4) tables.routes.Prefetch(*vrf, IpAddress::Version::k4, ip + kIpv4Addresses + 4);
  if (type == kEtherTypeIpv6) tables.routes.Prefetch(*vrf, IpAddress::Version::k6, ip + kIpv6Addresses + 16);
}

Way Send(const Tables& tables, const Records& records, unsigned destination, Carried carried, View bytes, Bytes* out,
         Story* story) {
  Way way;
  Walk walk(tables, records, bytes, out, &way, story);
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
  return way;
}

}  // namespace softcard
