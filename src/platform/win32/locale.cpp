// The decimal character on Windows: the decimal-separator item of locale identifier 10.
#include "platform/locale.h"

#include <windows.h>

namespace zq::platform {

char localeDecimalSeparator() {
    char separator[2] = {0, 0};
    if (GetLocaleInfoA(10, LOCALE_SDECIMAL, separator, sizeof separator) == 0 || separator[0] == 0)
        return ','; // the call failed or the answer did not fit two bytes
    return separator[0];
}

} // namespace zq::platform
