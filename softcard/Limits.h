#ifndef SOFTCARD_LIMITS_H
#define SOFTCARD_LIMITS_H

/// The numbers that are the same on every card.
namespace softcard {

constexpr unsigned kNoLabel = 0xFFFFFFFF;
constexpr unsigned kLastLabel = 0xFFFFF;  ///< labels have 20 bits
constexpr unsigned kExplicitNullV4 = 0;   ///< on the wire: the end of the path, IPv4 below
constexpr unsigned kExplicitNullV6 = 2;   ///< IPv6 below
constexpr unsigned kImplicitNull = 3;     ///< never on the wire: stands for no label
constexpr int kMaxLabels = 2;             ///< that a tunnel initiator pushes
constexpr unsigned char kLastExp = 7;
constexpr int kNoIntf = -1;
constexpr unsigned kNoVlan = 0;
constexpr unsigned kFirstVlan = 1;
constexpr unsigned kLastVlan = 4094;

constexpr bool IsVlan(unsigned vlan_id) { return vlan_id >= kFirstVlan && vlan_id <= kLastVlan; }

}  // namespace softcard

#endif
