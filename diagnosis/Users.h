#ifndef DIAGNOSIS_USERS_H
#define DIAGNOSIS_USERS_H

#include <vector>

#include "scenario/Fields.h"
#include "scenario/RowFilter.h"
#include "scenario/Step.h"
#include "softcard/Card.h"

namespace diagnosis {

/// What on a card uses a port, an interface, a label or the like: rows that name it, and the destinations that hold
/// such rows.
class Users {
 public:
  /// Of the one field that is given. Throws SyntaxError.
  explicit Users(const scenario::Fields& fields);

  /// The tables that have such rows.
  scenario::Shown On(const softcard::Card& card) const;

 private:
  struct Filtered {
    const softcard::TableDescription* table;
    scenario::RowFilter filter;
  };
  std::vector<Filtered> filters_;
};

/// How many rows of each table are in use, and how many there can be.
std::vector<softcard::Row> Usage(const softcard::Card& card);

}  // namespace diagnosis

#endif
