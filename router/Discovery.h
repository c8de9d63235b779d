#ifndef ROUTER_DISCOVERY_H
#define ROUTER_DISCOVERY_H

#include <optional>

#include "router/Encapsulations.h"
#include "softcard/packets/Frame.h"

namespace router {

/// Who says in a frame which addresses it has.
struct Announcement {
  unsigned vlan_id;  ///< of the frame's tag; 0: it has none
  softcard::IpAddress address;
  Mac mac;
};

/// What ARP and IPv6's neighbour discovery announce; nothing for any other frame, and for one that is cut off or at
/// odds with itself.
std::optional<Announcement> ReadAnnouncement(softcard::View frame);

/// The sender of an IP packet to a group that no router sends on, such as a routing protocol's greeting.
std::optional<Announcement> ReadSender(softcard::View frame);
/// Whom an IP packet is for, as far as it is the one that the frame is for: true of what is said to a next hop itself.
std::optional<Announcement> ReadAddressee(softcard::View frame);

}  // namespace router

#endif
