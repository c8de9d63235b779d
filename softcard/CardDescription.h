#ifndef SOFTCARD_CARD_DESCRIPTION_H
#define SOFTCARD_CARD_DESCRIPTION_H

namespace softcard {

/// What a card has: its ports and the sizes of its tables. The defaults are the built-in card.
struct CardDescription {
  unsigned front_ports = 48;  ///< eth1 ... ethN
  unsigned lags = 8;          ///< lag1 ... lagN
  unsigned vrfs = 1024;
  unsigned vlans = 4094;       ///< size of the my-station, VLAN-to-VRF and protocol-control tables
  unsigned intfs = 16384;      ///< L3 interfaces
  unsigned egresses = 65536;   ///< L3 egress objects
  unsigned initiators = 8192;  ///< MPLS tunnel initiators
  int unit = 0;
  int slot = 1;
  int exp_map_id = 1;  ///< the QoS map that remarks EXP
};

}  // namespace softcard

#endif
