#ifndef SOFTCARD_TABLES_ROUTE_TABLE_H
#define SOFTCARD_TABLES_ROUTE_TABLE_H

#include <vector>

#include "softcard/tables/HashMap.h"
#include "softcard/tables/Prefix.h"
#include "softcard/tables/PrefixTree.h"
#include "softcard/tables/Row.h"
#include "softcard/tables/Sorted.h"

namespace softcard {

/// The destination that packets for a prefix go to, by VRF. Neither the VRF nor the destination has to be there: what
/// is installed counts when a packet comes.
class RouteTable {
 public:
  static const TableDescription kDescription;

  explicit RouteTable(unsigned size) : size_(size) {}

  /// The prefix's destination in place of the one that it may have. BCM_E_PARAM for a prefix that is none, BCM_E_FULL.
  int Set(unsigned vrf, const Prefix& prefix, unsigned destination);
  /// BCM_E_PARAM for a prefix that is none, BCM_E_NOT_FOUND.
  int Delete(unsigned vrf, const Prefix& prefix);

  /// The longest prefix that an address, in network byte order, lies in; its value is the destination's id.
  PrefixTree::Match Find(unsigned vrf, IpAddress::Version version, const unsigned char* address) const {
    const Trees* const trees = vrfs_.Find(vrf);
    if (!trees) return {0, nullptr};
    return (version == IpAddress::Version::k4 ? trees->v4 : trees->v6).Longest(version, address);
  }

  void Prefetch(unsigned vrf, IpAddress::Version version, const unsigned char* address) const {
    const Trees* const trees = vrfs_.Find(vrf);
    if (trees) (version == IpAddress::Version::k4 ? trees->v4 : trees->v6).Prefetch(version, address);
  }

  unsigned count() const { return count_; }
  unsigned size() const { return size_; }
  /// By VRF, IP version and address, the shorter of two prefixes that begin alike first.
  std::vector<Row> Rows() const;
  /// Tells (VRF, prefix, destination) of each route in that order. None may come or go meanwhile.
  template <typename Visit>
  void ForEach(const Visit& visit) const {
    for (const auto& table : Sorted(vrfs_)) {
      const auto tell = [&](const Prefix& prefix, uint32_t destination) { visit(table.first, prefix, destination); };
      table.second.v4.ForEach(IpAddress::Version::k4, tell);
      table.second.v6.ForEach(IpAddress::Version::k6, tell);
    }
  }

 private:
  struct Trees {
    PrefixTree v4;
    PrefixTree v6;

    PrefixTree& Of(const Prefix& prefix) { return prefix.address.version == IpAddress::Version::k4 ? v4 : v6; }
  };

  unsigned size_;
  unsigned count_ = 0;
  HashMap<unsigned, Trees> vrfs_;  ///< those with routes
};

Row MakeRow(unsigned vrf, const Prefix& prefix, unsigned destination);

}  // namespace softcard

#endif
