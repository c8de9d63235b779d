#ifndef DIAGNOSIS_ROW_USERS_H
#define DIAGNOSIS_ROW_USERS_H

#include <map>
#include <set>
#include <string>

#include "diagnosis/Ledger.h"
#include "softcard/Card.h"

namespace diagnosis {

/// Which destinations use a row: what their packets go through from the record to the port, what a VLAN's destination
/// needs of its VLAN, and what leads to them.
class RowUsers {
 public:
  RowUsers(const softcard::Card& card, const Ledger& ledger);

  const std::set<unsigned>& Of(const softcard::Row& row) const;

 private:
  std::map<std::string, std::set<unsigned>> users_;  ///< by the row's name
};

}  // namespace diagnosis

#endif
