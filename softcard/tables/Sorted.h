#ifndef SOFTCARD_TABLES_SORTED_H
#define SOFTCARD_TABLES_SORTED_H

#include <map>

#include "softcard/tables/HashMap.h"

namespace softcard {

/// Rows in the order of their keys, to be shown: tables keep them in the order that finds them fastest.
template <typename Key, typename Row>
std::map<Key, const Row&> Sorted(const HashMap<Key, Row>& rows) {
  std::map<Key, const Row&> sorted;
  for (const auto& [key, row] : rows) sorted.emplace(key, row);
  return sorted;
}

}  // namespace softcard

#endif
