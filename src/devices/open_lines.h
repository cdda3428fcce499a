// The serial lines OPENCOM opened and programs still hold, by their handle values.
#pragma once

#include "platform/serial.h"

#include <cstdint>

namespace zq::devices {

// Keeps an open line; returns its handle value, or 0 when it could not be kept.
intptr_t keepLine(platform::SerialLine line);

// True when the handle value is a line OPENCOM opened and CLOSECOM has not closed.
bool isOpenLine(intptr_t handle);

// Closes a kept line; false when it is not one or the system refused.
bool closeLine(intptr_t handle);

} // namespace zq::devices
