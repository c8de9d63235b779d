#ifndef TESTS_SOFTCARD_PACKETS_COUNTED_MEMORY_H
#define TESTS_SOFTCARD_PACKETS_COUNTED_MEMORY_H

#include <cstddef>

/// The program's operator new and delete, replaced: they count.
namespace counted_memory {

unsigned long Allocations();
/// Bytes that are allocated now, and the most that ever were since the mark was set to those of now.
std::size_t Live();
std::size_t HighWater();
void SetMark();

}  // namespace counted_memory

#endif
