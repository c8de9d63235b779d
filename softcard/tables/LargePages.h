#ifndef SOFTCARD_TABLES_LARGE_PAGES_H
#define SOFTCARD_TABLES_LARGE_PAGES_H

#include <sys/mman.h>

#include <cstddef>
#include <memory>
#include <new>

namespace softcard {

/// An allocator for a vector that may become large and is read here and there: it asks the system for large pages then,
/// as a processor remembers the places of few small ones, and finding out where one is takes it as long as reading it.
template <typename T>
struct LargePages {
  using value_type = T;

  static constexpr std::size_t kPage = std::size_t{2} << 20;

  LargePages() = default;
  template <typename Other>
  explicit LargePages(const LargePages<Other>&) {}

  T* allocate(std::size_t count) {
    if (!IsLarge(count)) return std::allocator<T>().allocate(count);
    const std::size_t bytes = (count * sizeof(T) + kPage - 1) / kPage * kPage;
    void* const memory = ::operator new(bytes, std::align_val_t(kPage));
    // Where the system has none, small ones do.
    madvise(memory, bytes, MADV_HUGEPAGE);
    return static_cast<T*>(memory);
  }
  void deallocate(T* memory, std::size_t count) {
    if (!IsLarge(count)) return std::allocator<T>().deallocate(memory, count);
    ::operator delete(memory, std::align_val_t(kPage));
  }

  template <typename Other>
  bool operator==(const LargePages<Other>&) const {
    return true;
  }
  template <typename Other>
  bool operator!=(const LargePages<Other>&) const {
    return false;
  }

 private:
  static bool IsLarge(std::size_t count) { return count * sizeof(T) >= kPage; }
};

}  // namespace softcard

#endif
