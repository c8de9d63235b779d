#ifndef SOFTCARD_TABLES_KEY_TABLE_H
#define SOFTCARD_TABLES_KEY_TABLE_H

#include "bcm/error.h"
#include "softcard/tables/HashMap.h"

namespace softcard {

/// Rows under keys that the caller brings.
template <typename Key, typename Row>
class KeyTable {
 public:
  explicit KeyTable(unsigned size) : size_(size) {}

  /// A new row: BCM_E_EXISTS for a key that has one, BCM_E_FULL without room.
  int Insert(const Key& key, const Row& row) { return Find(key) ? BCM_E_EXISTS : Write(key, row); }

  /// The key's row, new or not: BCM_E_FULL for a new one without room.
  int Write(const Key& key, const Row& row) {
    if (rows_.size() >= size_ && !Find(key)) return BCM_E_FULL;
    rows_[key] = row;
    return BCM_E_NONE;
  }

  int Delete(const Key& key) { return rows_.Erase(key) ? BCM_E_NONE : BCM_E_NOT_FOUND; }

  /// Null for a key without a row.
  const Row* Find(const Key& key) const { return rows_.Find(key); }

  const HashMap<Key, Row>& rows() const { return rows_; }
  unsigned size() const { return size_; }

 private:
  unsigned size_;
  HashMap<Key, Row> rows_;
};

}  // namespace softcard

#endif
