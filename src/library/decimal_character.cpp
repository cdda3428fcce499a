// The locale decimal character, with an environment override for every platform.
#include "library/decimal_character.h"

#include "platform/locale.h"

#include <cstdlib>

namespace zq::library {

char localeDecimalCharacter() {
    if (const char *forced = std::getenv("ZELQA_DECIMAL_CHAR"); forced && *forced)
        return *forced;
    return platform::localeDecimalSeparator();
}

} // namespace zq::library
