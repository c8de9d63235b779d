#ifndef TESTS_PROOF_ALLOCATIONS_H
#define TESTS_PROOF_ALLOCATIONS_H

/// The process's operator new and delete, replaced: they count, and fail where they are told to.
namespace allocations {

/// Blocks that have been allocated and not freed.
long Live();
/// The `nth` allocation from now on throws std::bad_alloc, once; 0: none does.
void FailNth(long nth);
/// Whether the planned one has come.
bool HasFailed();

}  // namespace allocations

#endif
