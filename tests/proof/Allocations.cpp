#include "tests/proof/Allocations.h"

#include <cstdlib>
#include <new>

namespace {

long live_blocks = 0;
long countdown = 0;
bool has_failed = false;

void* Allocate(std::size_t size) {
  if (countdown > 0 && --countdown == 0) {
    has_failed = true;
    throw std::bad_alloc();
  }
  void* const block = std::malloc(size > 0 ? size : 1);
  if (!block) throw std::bad_alloc();
  ++live_blocks;
  return block;
}

void Free(void* block) {
  if (!block) return;
  --live_blocks;
  std::free(block);
}

}  // namespace

namespace allocations {

long Live() { return live_blocks; }

void FailNth(long nth) {
  countdown = nth;
  has_failed = false;
}

bool HasFailed() { return has_failed; }

}  // namespace allocations

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void operator delete(void* block) noexcept { Free(block); }
void operator delete[](void* block) noexcept { Free(block); }
void operator delete(void* block, std::size_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t) noexcept { Free(block); }
