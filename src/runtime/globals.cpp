// Start and end of the run: __BeginGlobal, __EndGlobal and SHUTDOWN.
//
// The end of the run goes in this order:
//   1. free the values: arrays, variables, temporaries, settings, shared constants and
//      debug frames, and the context itself, so that the allocation balance is back to
//      what existed before start-up;
//   2. when SHUTDOWN was called (the flag is read before step 1 destroys it), hand over
//      to the installer;
//   3. close record storage.
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
    if (!existingContext())
        return;
    destroyContext();
    // Step 2, the installer hand-off, takes its place here.
}

int SHUTDOWN(void) noexcept {
    context().shutdownRequested = 1;
    __CloseDialog();
    return 0;
}
