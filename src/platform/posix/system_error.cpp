// The last system error on POSIX: errno and strerror.
#include "platform/system_error.h"

#include <cerrno>
#include <cstring>

namespace zq::platform {

uint32_t lastSystemError() { return static_cast<uint32_t>(errno); }

void setLastSystemError(uint32_t code) { errno = static_cast<int>(code); }

std::string systemErrorText(uint32_t code) { return std::strerror(static_cast<int>(code)); }

} // namespace zq::platform
