// The counting allocator behind "malloc-free" in ShowFreeMem.
#include "runtime/memory.h"

#include "runtime/raise.h"

#include <cstdlib>

namespace zq::runtime {
namespace {
int32_t balance = 0;
} // namespace

void *tryAllocate(size_t bytes) {
    void *p = std::calloc(1, bytes ? bytes : 1);
    if (p)
        ++balance;
    return p;
}

void *allocate(size_t bytes) {
    void *p = tryAllocate(bytes);
    if (!p)
        raiseError(ZQ_ERR_LOW_MEMORY);
    return p;
}

void release(void *p) {
    if (!p)
        return;
    --balance;
    std::free(p);
}

int32_t allocationBalance() { return balance; }

} // namespace zq::runtime
