// Start and end of the run: __BeginGlobal, __EndGlobal and SHUTDOWN.
#include "runtime/context.h"
#include "zelqa/boxes.h"
#include "zelqa/context.h"

using namespace zq::runtime;

int __BeginGlobal(void) noexcept {
    if (!existingContext())
        newContext();
    context().shutdownRequested = 0;
    return existingContext() != nullptr;
}

void __EndGlobal(void) noexcept {
    RuntimeContext *ctx = existingContext();
    if (!ctx)
        return;
    destroyContext();
}

int SHUTDOWN(void) noexcept {
    context().shutdownRequested = 1;
    __CloseDialog();
    return 0;
}
