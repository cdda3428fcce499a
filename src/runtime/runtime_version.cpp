// __GetRTVer: the build stamp of the runtime.
#include "zelqa/context.h"
#include "zelqa/values.h"

#include <cstdio>

pObj __GetRTVer(void) noexcept {
    char stamp[32];
    std::snprintf(stamp, sizeof stamp, "%s %s", __DATE__, __TIME__);
    return __INIT_CHARPTR(stamp);
}
