// The date built-ins that touch settings: __Set_DateFormat stores a format as it is, and
// __SetEpoch does nothing (the epoch is changed through __Set only).
#include "library/arguments.h"
#include "library/date_fields.h"
#include "runtime/settings.h"
#include "zelqa/dates.h"

void __Set_DateFormat(pObj format) noexcept {
    if (!format)
        return;
    zq::runtime::storeSetting(zq::library::kDateFormatSetting, zq::library::requireText(format));
}

void __SetEpoch(pObj) noexcept {}
