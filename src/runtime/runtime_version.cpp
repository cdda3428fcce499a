// The runtime's version: its release number (zq_version) and its build stamp (__GetRTVer).
#include "zelqa/context.h"
#include "zelqa/values.h"
#include "zelqa/version.h"

#include <cstdio>

pObj __GetRTVer(void) noexcept {
    char stamp[32];
    std::snprintf(stamp, sizeof stamp, "%s %s", __DATE__, __TIME__);
    return __INIT_CHARPTR(stamp);
}

const char *zq_version(void) noexcept { return ZELQA_VERSION; }
