#ifndef SOFTCARD_TABLES_ID_TABLE_H
#define SOFTCARD_TABLES_ID_TABLE_H

#include <limits>

#include "bcm/error.h"
#include "softcard/tables/HashMap.h"

namespace softcard {

/// Rows under ids that the table gives out: one after the other from the first on, so that the same requests always
/// get the same ids and an id that has been deleted comes back only after all others. A copy has rows of its own.
template <typename Row>
class IdTable {
 public:
  IdTable(int first_id, unsigned size) : first_id_(first_id), size_(size), next_id_(first_id) {}

  /// The new row's id, or BCM_E_FULL.
  int Add(const Row& row) {
    if (rows_.size() >= size_) return BCM_E_FULL;
    int id = 0;
    for (bool is_free = false; !is_free; Advance()) {
      id = next_id_;
      is_free = rows_.Insert(id, row).second;
    }
    return id;
  }
  int Delete(int id) { return rows_.Erase(id) ? BCM_E_NONE : BCM_E_NOT_FOUND; }

  /// Null for an id that is not in use. Rows stay where they are until they are deleted.
  Row* Find(int id) { return rows_.Find(id); }
  const Row* Find(int id) const { return rows_.Find(id); }

  const HashMap<int, Row>& rows() const { return rows_; }
  unsigned size() const { return size_; }

 private:
  void Advance() { next_id_ = next_id_ == std::numeric_limits<int>::max() ? first_id_ : next_id_ + 1; }

  int first_id_;
  unsigned size_;
  int next_id_;
  HashMap<int, Row> rows_;
};

}  // namespace softcard

#endif
