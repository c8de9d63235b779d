#ifndef SOFTCARD_TABLES_HASH_MAP_H
#define SOFTCARD_TABLES_HASH_MAP_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace softcard {

/// Rows under numbers, as in std::unordered_map, and found without its division, which takes a packet longer than all
/// the rest of a look: it meets seven of these tables on its way. Rows stay where they are until they are erased. A
/// copy has rows of its own.
///
/// A row stands in the slot that its key's hash names or, when that is taken, in the next free one behind it.
template <typename Key, typename Row>
class HashMap {
 public:
  using value_type = std::pair<const Key, Row>;

  class const_iterator {
   public:
    const_iterator(const HashMap& map, std::size_t slot) : map_(map), slot_(slot) { SkipFree(); }

    const value_type& operator*() const { return *map_.slots_[slot_]; }
    const value_type* operator->() const { return map_.slots_[slot_].get(); }
    const_iterator& operator++() {
      ++slot_;
      SkipFree();
      return *this;
    }
    bool operator!=(const const_iterator& other) const { return slot_ != other.slot_; }

   private:
    void SkipFree() {
      while (slot_ < map_.slots_.size() && !map_.slots_[slot_]) ++slot_;
    }

    const HashMap& map_;
    std::size_t slot_;
  };

  HashMap() : slots_(kFewest) {}
  HashMap(const HashMap& other) : slots_(other.slots_.size()), shift_(other.shift_), size_(other.size_) {
    for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
      if (other.slots_[slot]) slots_[slot] = std::make_unique<value_type>(*other.slots_[slot]);
    }
  }
  HashMap& operator=(HashMap other) {
    slots_.swap(other.slots_);
    shift_ = other.shift_;
    size_ = other.size_;
    return *this;
  }
  HashMap(HashMap&&) noexcept = default;
  ~HashMap() = default;

  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  /// In no order that means anything.
  const_iterator begin() const { return {*this, 0}; }
  const_iterator end() const { return {*this, slots_.size()}; }

  /// Null for a key without a row.
  const Row* Find(const Key& key) const {
    const value_type* const found = slots_[SlotOf(key)].get();
    return found ? &found->second : nullptr;
  }
  Row* Find(const Key& key) { return const_cast<Row*>(std::as_const(*this).Find(key)); }

  /// The key's row, one made of `row` when it had none, and whether that was so.
  std::pair<Row*, bool> Insert(const Key& key, const Row& row) {
    std::size_t slot = SlotOf(key);
    if (slots_[slot]) return {&slots_[slot]->second, false};
    auto inserted = std::make_unique<value_type>(key, row);
    if (2 * (size_ + 1) > slots_.size()) {
      Grow();
      slot = SlotOf(key);
    }
    ++size_;
    slots_[slot] = std::move(inserted);
    return {&slots_[slot]->second, true};
  }
  Row& operator[](const Key& key) { return *Insert(key, Row()).first; }

  /// Whether the key had a row.
  bool Erase(const Key& key) {
    std::size_t gap = SlotOf(key);
    if (!slots_[gap]) return false;
    slots_[gap].reset();
    --size_;
    // What had to go past the slot that is free now comes nearer to its own.
    for (std::size_t slot = Next(gap); slots_[slot]; slot = Next(slot)) {
      const std::size_t mask = slots_.size() - 1;
      if (((slot - Home(slots_[slot]->first)) & mask) < ((slot - gap) & mask)) continue;
      slots_[gap] = std::move(slots_[slot]);
      gap = slot;
    }
    return true;
  }

 private:
  static constexpr std::size_t kFewest = 8;
  static constexpr unsigned kFewestShift = 32 - 3;

  /// The upper bits of a product with the golden ratio: keys that follow each other lie far apart.
  std::size_t Home(const Key& key) const { return (static_cast<uint32_t>(key) * 0x9E3779B9U) >> shift_; }
  std::size_t Next(std::size_t slot) const { return (slot + 1) & (slots_.size() - 1); }

  /// The key's slot or, of a key without a row, the free one that it would get. Half of them are free at least.
  std::size_t SlotOf(const Key& key) const {
    std::size_t slot = Home(key);
    while (slots_[slot] && slots_[slot]->first != key) slot = Next(slot);
    return slot;
  }

  void Grow() {
    std::vector<std::unique_ptr<value_type>> rows(2 * slots_.size());
    rows.swap(slots_);
    --shift_;
    for (std::unique_ptr<value_type>& row : rows) {
      if (row) slots_[SlotOf(row->first)] = std::move(row);
    }
  }

  std::vector<std::unique_ptr<value_type>> slots_;  ///< a power of two of them
  unsigned shift_ = kFewestShift;                   ///< leaves as many bits of a hash as name a slot
  std::size_t size_ = 0;
};

}  // namespace softcard

#endif
