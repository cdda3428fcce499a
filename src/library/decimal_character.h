// The one place the function library asks for the locale decimal character.
#pragma once

namespace zq::library {

// Asked afresh on each call: the first byte of ZELQA_DECIMAL_CHAR when that is set and
// not empty, else the locale's answer.
char localeDecimalCharacter();

} // namespace zq::library
