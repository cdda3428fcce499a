// The decimal character on POSIX: the comma the applications' locale uses.
#include "platform/locale.h"

namespace zq::platform {

char localeDecimalSeparator() { return ','; }

} // namespace zq::platform
