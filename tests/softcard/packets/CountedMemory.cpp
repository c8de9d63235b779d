#include "tests/softcard/packets/CountedMemory.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

unsigned long allocations = 0;
std::size_t live = 0;
std::size_t high_water = 0;

/// Before each block stands its size; as wide as what may follow it has to be aligned to.
constexpr std::size_t kHead = alignof(std::max_align_t) > sizeof(std::size_t) ? alignof(std::max_align_t)
                                                                              : sizeof(std::size_t);

}  // namespace

namespace counted_memory {

unsigned long Allocations() { return allocations; }
std::size_t Live() { return live; }
std::size_t HighWater() { return high_water; }
void SetMark() { high_water = live; }

}  // namespace counted_memory

void* operator new(std::size_t size) {
  void* const block = std::malloc(kHead + size);
  if (!block) throw std::bad_alloc();
  ++allocations;
  live += size;
  high_water = std::max(high_water, live);
  *static_cast<std::size_t*>(block) = size;
  return static_cast<char*>(block) + kHead;
}

void operator delete(void* memory) noexcept {
  if (!memory) return;
  void* const block = static_cast<char*>(memory) - kHead;
  live -= *static_cast<std::size_t*>(block);
  std::free(block);
}

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }
