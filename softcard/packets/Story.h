#ifndef SOFTCARD_PACKETS_STORY_H
#define SOFTCARD_PACKETS_STORY_H

#include <string>
#include <variant>

#include "hal/IntfObject.h"
#include "softcard/packets/Drop.h"
#include "softcard/packets/Packet.h"
#include "softcard/tables/Prefix.h"
#include "softcard/tables/Row.h"

/// A packet's way, told while it goes: a step for each table that decided, then the frame from the outside in, then the
/// end. The frame's bytes are valid while they are told.
namespace softcard {

struct ArrivalStep {
  int port;
  std::size_t bytes;
};
/// What is programmed is at odds with itself, and how the card takes it.
struct OddityStep {
  std::string text;
};

/// A label's EXP, from a map of the card's description.
struct ExpMapStep {
  int map;
  unsigned priority;  ///< the packet's
  unsigned exp;
};
/// An incoming null label that has no row of its own ends the path in the VRF that it came in on.
struct ExplicitNullStep {
  unsigned label;
  unsigned vrf;
};

struct EthernetLayer {
  MacAddress destination;
  MacAddress source;
  unsigned type;
};
struct TagLayer {
  unsigned vlan_id;
  unsigned type;
};
struct LabelLayer {
  StackEntry entry;
};
/// Of either version.
struct IpLayer {
  IpAddress source;
  IpAddress destination;
  unsigned ttl;      ///< or hop limit
  unsigned tos;      ///< or traffic class
  std::size_t size;  ///< with the header
};
struct PayloadLayer {
  std::size_t bytes;
};

struct SentStep {
  int port;
  View frame;
};
struct ToCpuStep {
  std::string reason;
  View frame;
};
struct DroppedStep {
  Drop drop;
  std::string reason;
};

/// A `Row` is the row of a table that decided.
using Step = std::variant<ArrivalStep, Row, OddityStep, ExpMapStep, ExplicitNullStep, EthernetLayer, TagLayer,
                          LabelLayer, IpLayer, PayloadLayer, SentStep, ToCpuStep, DroppedStep>;

/// Whoever wants to hear it.
class Story {
 public:
  virtual ~Story() = default;
  virtual void Tell(const Step& step) = 0;
};

}  // namespace softcard

#endif
