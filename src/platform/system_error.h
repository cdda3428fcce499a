// The calling thread's last system error and its text.
#pragma once

#include <cstdint>
#include <string>

namespace zq::platform {

uint32_t lastSystemError();
void setLastSystemError(uint32_t code);
// The system's own text for an error code, without a trailing line break.
std::string systemErrorText(uint32_t code);

} // namespace zq::platform
