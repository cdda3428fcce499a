// Reading the devices' value arguments: numbers as whole counts, handle values as lines.
#pragma once

#include "library/arguments.h"
#include "zelqa/base.h"

#include <cstdint>

namespace zq::devices {

// A number truncated towards zero, held to the 32-bit range.
inline int32_t wholeNumber(double x) { return library::truncated(x); }

// A number truncated and taken as a signed 16-bit value, as counts and baud rates are.
inline int16_t sixteenBitNumber(double x) { return static_cast<int16_t>(wholeNumber(x)); }

using library::isNumber;
using library::isText;
inline bool isHandle(pObj v) { return v && v->type == TYPE_HANDLE; }

// The line a handle value holds.
inline intptr_t lineOf(pObj handle) { return reinterpret_cast<intptr_t>(handle->payload.p); }

} // namespace zq::devices
