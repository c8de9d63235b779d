#ifndef SOFTCARD_PACKETS_WAY_H
#define SOFTCARD_PACKETS_WAY_H

#include <optional>

#include "softcard/Tables.h"
#include "softcard/packets/Drop.h"
#include "softcard/packets/Frame.h"
#include "softcard/tables/Destinations.h"

namespace softcard {

class Story;

/// What becomes of a packet.
struct Way {
  enum class Fate { kSent, kToCpu, kDropped };

  Fate fate = Fate::kDropped;
  Drop drop = Drop::kMalformed;           ///< why, when it is dropped
  int port = 0;                           ///< that the frame leaves by, of a LAG with members one of them; 0: the CPU
  std::optional<unsigned> destination{};  ///< the one that it was for, as far as it came
};

/// What a packet in Send begins with.
enum class Carried { kIp, kLabels, kEthernet };

/// A frame from the wire, without its check sequence: from an Ethernet port over VLAN, my station, VRF and route or
/// label, or from an attached port at once, to a destination and out. A packet is counted down where it is routed or
/// its label is looked at. `out`: the frame that leaves, or what the CPU gets, the frame as it came; nothing for a
/// packet that is dropped. Without a story nothing is allocated once `out` has room. Every loop is bounded by the
/// frame's length.
Way Inject(const Tables& tables, const Records& records, int port, View frame, Bytes* out, Story* story = nullptr);

/// Has the memory fetched that Inject of this frame would wait for. Whoever has several frames says so of one that
/// comes a few frames later: most of the time in a large table is waiting. Changes nothing; any bytes will do.
void Prefetch(const Tables& tables, View frame);

/// A packet that has been routed to a destination, from there on. It keeps its TTL. Of a packet with labels a swap
/// replaces the outermost; other destinations leave them and put theirs above.
Way Send(const Tables& tables, const Records& records, unsigned destination, Carried carried, View packet, Bytes* out,
         Story* story = nullptr);

}  // namespace softcard

#endif
