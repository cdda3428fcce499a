// Start and end of the run: __BeginGlobal, __EndGlobal and SHUTDOWN.
//
// The end of the run goes in this order:
//   1. close every table, writing the rows still pending in edit buffers;
//   2. free the values: arrays, variables, temporaries, settings, shared constants and
//      debug frames, and the context itself, so that the allocation balance is back to
//      what existed before start-up;
//   3. when SHUTDOWN was called (the flag is read before step 2 destroys it), hand over
//      to the installer;
//   4. close record storage.
#include "installer/hand_off.h"
#include "runtime/context.h"
#include "runtime/failure.h"
#include "zelqa/boxes.h"
#include "zelqa/context.h"
#include "zelqa/storage.h"

using namespace zq::runtime;

int __BeginGlobal(void) noexcept {
    if (!existingContext())
        newContext();
    context().shutdownRequested = 0;
    return existingContext() != nullptr;
}

void __EndGlobal(void) noexcept {
    closeTables();
    RuntimeContext *ctx = existingContext();
    bool handOff = ctx && ctx->shutdownRequested != 0; // read before the context goes
    destroyContext();
    if (handOff)
        zq::installer::handOffToInstaller();
    StorageClose();
}

int SHUTDOWN(void) noexcept {
    context().shutdownRequested = 1;
    __CloseDialog();
    return 0;
}
