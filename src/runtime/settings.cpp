// The settings slots: each holds a permanent variable so that no context end frees it.
#include "runtime/settings.h"

#include "zelqa/values.h"

namespace zq::runtime {

pObj storeSetting(int n, pObj value) {
    RuntimeContext &ctx = context();
    pObj &slot = ctx.settings[n - 1];
    slot = __SET_OBJECT(slot, value);
    slot->lockCount = -1; // permanent: the settings outlive every context
    slot->depth = -1;
    return slot;
}

void setStartupSettings(RuntimeContext &ctx) {
    ctx.settings.fill(nullptr);
    storeSetting(3, __INIT_DOUBLE(2));
    storeSetting(4, __INIT_CHARPTR("mm/dd/yy"));
    storeSetting(5, __INIT_DOUBLE(1940));
    storeSetting(9, sharedConstant(kFalse));
    storeSetting(11, sharedConstant(kFalse));
    storeSetting(12, sharedConstant(kFalse));
}

} // namespace zq::runtime
