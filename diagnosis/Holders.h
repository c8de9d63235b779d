#ifndef DIAGNOSIS_HOLDERS_H
#define DIAGNOSIS_HOLDERS_H

#include <functional>
#include <optional>
#include <string>

#include "diagnosis/Ledger.h"
#include "softcard/Card.h"

namespace diagnosis {

/// A destination's record, with what made it.
struct Holder {
  int destination;
  int intf;
  int egress;
  Maker maker;
  std::optional<softcard::IntfValues> intf_values;  ///< nothing: there is no such interface
  const softcard::Egress* egress_object;            ///< null: there is no such egress object

  /// Whether it holds its interface, and does not only leave through it.
  bool OwnsIntf() const;
  std::string Name() const { return "destination " + std::to_string(static_cast<unsigned>(destination)); }
};

/// Calls `visit` for each record, in the order of their destinations' ids.
void ForEachHolder(const softcard::Card& card, const Ledger& ledger, const std::function<void(const Holder&)>& visit);

}  // namespace diagnosis

#endif
