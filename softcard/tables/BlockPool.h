#ifndef SOFTCARD_TABLES_BLOCK_POOL_H
#define SOFTCARD_TABLES_BLOCK_POOL_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "softcard/tables/LargePages.h"

namespace softcard {

/// Short arrays, which grow and shrink by an element at a time, in one piece of memory. A block is named by the index
/// of its first element. It has room for a power of two of them; what becomes free is used again for blocks of its
/// size.
template <typename T>
class BlockPool {
 public:
  T& operator[](std::size_t index) { return items_[index]; }
  const T& operator[](std::size_t index) const { return items_[index]; }

  /// Of all blocks, with those that are free.
  std::size_t size() const { return items_.size(); }

  /// Puts `item` before element `at` of a block of `count` elements; gives the block's place from now on.
  uint32_t Insert(uint32_t first, unsigned count, unsigned at, const T& item) {
    const uint32_t grown = Moved(first, count, count + 1);
    const auto begin = items_.begin() + grown;
    std::copy_backward(begin + at, begin + count, begin + count + 1);
    items_[grown + at] = item;
    return grown;
  }

  /// Takes element `at` out of a block of `count` elements; gives the block's place from now on.
  uint32_t Erase(uint32_t first, unsigned count, unsigned at) {
    const auto begin = items_.begin() + first;
    std::copy(begin + at + 1, begin + count, begin + at);
    return Moved(first, count, count - 1);
  }

 private:
  static unsigned Room(unsigned count) {
    unsigned log = 0;
    while (1U << log < count) ++log;
    return log;
  }

  /// The block with room for another number of elements.
  uint32_t Moved(uint32_t first, unsigned count, unsigned new_count) {
    if (count > 0 && new_count > 0 && Room(count) == Room(new_count)) return first;
    const uint32_t moved = new_count > 0 ? Allocate(Room(new_count)) : 0;
    std::copy_n(items_.begin() + first, std::min(count, new_count), items_.begin() + moved);
    if (count > 0) free_[Room(count)].push_back(first);
    return moved;
  }

  uint32_t Allocate(unsigned room) {
    if (!free_[room].empty()) {
      const uint32_t first = free_[room].back();
      free_[room].pop_back();
      return first;
    }
    const std::size_t first = items_.size();
    const std::size_t end = first + (std::size_t{1} << room);
    // By an eighth, not to twice the size: a large table shall not be half empty.
    if (end > items_.capacity()) items_.reserve(end + end / 8);
    items_.resize(end);
    return static_cast<uint32_t>(first);
  }

  static constexpr std::size_t kRooms = 8;  ///< up to 128 elements

  std::vector<T, LargePages<T>> items_;
  std::array<std::vector<uint32_t>, kRooms> free_;
};

}  // namespace softcard

#endif
