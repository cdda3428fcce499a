// ShowFreeMem: the allocation balance and the owner-list counts, in an "Alert" box.
#include "runtime/context.h"
#include "runtime/memory.h"
#include "zelqa/boxes.h"
#include "zelqa/values.h"

#include <cstdio>

using namespace zq::runtime;

void ShowFreeMem(void) noexcept {
    RuntimeContext &ctx = context();
    char text[256];
    std::snprintf(text, sizeof text, "malloc-free=%i\npObj=%d\nArrays=%d\nvElArray=%d\nLocked Stack=%d",
                  static_cast<int>(allocationBalance()), static_cast<int>(ctx.lists[kVariableList].count),
                  static_cast<int>(ctx.lists[kArrayList].count), static_cast<int>(ctx.lists[kElementList].count),
                  static_cast<int>(ctx.lockedTemporaries));
    __gMessageBox("Alert", text);
}
