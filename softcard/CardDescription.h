#ifndef SOFTCARD_CARD_DESCRIPTION_H
#define SOFTCARD_CARD_DESCRIPTION_H

#include <array>
#include <map>

namespace softcard {

/// The EXP of a label by the packet's own priority, by map id. A map that is not described copies the priority.
using ExpMaps = std::map<int, std::array<unsigned char, 8>>;

/// What a card has: its ports and the sizes of its tables. The defaults are the built-in card.
struct CardDescription {
  unsigned front_ports = 48;  ///< eth1 ... ethN
  unsigned lags = 8;          ///< lag1 ... lagN
  unsigned vrfs = 1024;
  unsigned vlans = 4094;       ///< size of the my-station, VLAN-to-VRF and protocol-control tables
  unsigned intfs = 16384;      ///< L3 interfaces
  unsigned egresses = 65536;   ///< L3 egress objects
  unsigned initiators = 8192;  ///< MPLS tunnel initiators
  unsigned routes = 1000000;   ///< of all VRFs and both IP versions
  unsigned labels = 1000000;   ///< incoming MPLS labels
  int unit = 0;
  int slot = 1;
  int exp_map_id = 1;  ///< the QoS map that remarks EXP
  ExpMaps exp_maps;
};

}  // namespace softcard

#endif
