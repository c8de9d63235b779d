#include "tests/softcard/packets/CountedMemory.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

unsigned long allocations = 0;
std::size_t live = 0;
std::size_t high_water = 0;

/// Before each block stands its size; that takes as much as the block has to be aligned to.
constexpr std::size_t kHead = alignof(std::max_align_t) > sizeof(std::size_t) ? alignof(std::max_align_t)
                                                                              : sizeof(std::size_t);

void* Counted(void* block, std::size_t head, std::size_t size) {
  if (!block) throw std::bad_alloc();
  ++allocations;
  live += size;
  high_water = std::max(high_water, live);
  *static_cast<std::size_t*>(block) = size;
  return static_cast<char*>(block) + head;
}

void Free(void* memory, std::size_t head) {
  if (!memory) return;
  void* const block = static_cast<char*>(memory) - head;
  live -= *static_cast<std::size_t*>(block);
  std::free(block);
}

}  // namespace

namespace counted_memory {

unsigned long Allocations() { return allocations; }
std::size_t Live() { return live; }
std::size_t HighWater() { return high_water; }
void SetMark() { high_water = live; }

}  // namespace counted_memory

void* operator new(std::size_t size) { return Counted(std::malloc(kHead + size), kHead, size); }
void operator delete(void* memory) noexcept { Free(memory, kHead); }
void operator delete(void* memory, std::size_t) noexcept { Free(memory, kHead); }

// For types that are aligned to more than malloc gives.
void* operator new(std::size_t size, std::align_val_t alignment) {
  const auto head = static_cast<std::size_t>(alignment);
  return Counted(std::aligned_alloc(head, (head + size + head - 1) / head * head), head, size);
}
void operator delete(void* memory, std::align_val_t alignment) noexcept {
  Free(memory, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory, std::size_t, std::align_val_t alignment) noexcept {
  Free(memory, static_cast<std::size_t>(alignment));
}
