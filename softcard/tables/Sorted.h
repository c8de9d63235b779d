#ifndef SOFTCARD_TABLES_SORTED_H
#define SOFTCARD_TABLES_SORTED_H

#include <map>
#include <unordered_map>

namespace softcard {

/// Rows in the order of their keys, to be shown: tables keep them in the order that finds them fastest.
template <typename Key, typename Row>
std::map<Key, const Row&> Sorted(const std::unordered_map<Key, Row>& rows) {
  return {rows.begin(), rows.end()};
}

}  // namespace softcard

#endif
