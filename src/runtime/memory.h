// The runtime's one allocator: every runtime allocation and release passes here and is counted.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zq::runtime {

// Allocates zeroed memory; raises "LOW MEMORY!" when there is none.
void *allocate(size_t bytes);
// As allocate, but returns null instead of raising.
void *tryAllocate(size_t bytes);
// Releases memory from allocate; a null pointer is ignored and not counted.
void release(void *p);
// Allocations minus releases since the process started.
int32_t allocationBalance();

// The buffer size for a text of objLength bytes: rounded up to even, at least 2.
inline size_t textBufferSize(int32_t objLength) {
    size_t n = objLength < 2 ? 2 : static_cast<size_t>(objLength);
    return (n + 1) & ~size_t{1};
}

} // namespace zq::runtime
