#include "bench/Allocations.h"

#include <cstdlib>
#include <new>

namespace {

unsigned long allocations = 0;

}  // namespace

unsigned long Allocations() { return allocations; }

void* operator new(std::size_t size) {
  ++allocations;
  void* const memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
