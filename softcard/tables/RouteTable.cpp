#include "softcard/tables/RouteTable.h"

#include "bcm/error.h"

namespace softcard {

using calls::Kind;

const TableDescription RouteTable::kDescription = {"routes",
                                                   "route",
                                                   Origin::kMadeByRequests,
                                                   {"prefix", Kind::kText},
                                                   {{"vrf", Kind::kNumber}, {"destination", Kind::kNumber}}};

int RouteTable::Set(unsigned vrf, const Prefix& prefix, unsigned destination) {
  if (!prefix.IsValid()) return BCM_E_PARAM;
  Trees* trees = vrfs_.Find(vrf);
  if (count_ >= size_ && (!trees || !trees->Of(prefix).Has(prefix))) return BCM_E_FULL;
  if (!trees) trees = &vrfs_[vrf];
  if (trees->Of(prefix).Set(prefix, destination)) ++count_;
  return BCM_E_NONE;
}

int RouteTable::Delete(unsigned vrf, const Prefix& prefix) {
  if (!prefix.IsValid()) return BCM_E_PARAM;
  Trees* const trees = vrfs_.Find(vrf);
  if (!trees || !trees->Of(prefix).Delete(prefix)) return BCM_E_NOT_FOUND;
  if (trees->v4.empty() && trees->v6.empty()) vrfs_.Erase(vrf);
  --count_;
  return BCM_E_NONE;
}

std::vector<Row> RouteTable::Rows() const {
  std::vector<Row> rows;
  rows.reserve(count_);
  ForEach([&rows](unsigned vrf, const Prefix& prefix, unsigned destination) {
    rows.push_back(MakeRow(vrf, prefix, destination));
  });
  return rows;
}

Row MakeRow(unsigned vrf, const Prefix& prefix, unsigned destination) {
  return {&RouteTable::kDescription, calls::ToValue(Text(prefix)), {calls::ToValue(vrf), calls::ToValue(destination)}};
}

}  // namespace softcard
