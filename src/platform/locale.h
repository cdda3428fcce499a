// The locale's decimal character, as the system's locale information gives it.
#pragma once

namespace zq::platform {

// Windows: the decimal-separator item of locale identifier 10 (GetLocaleInfoA, two-byte
// buffer). POSIX has no such locale identifier: ','.
char localeDecimalSeparator();

} // namespace zq::platform
