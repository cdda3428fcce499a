// Reading the devices' value arguments: numbers as whole counts, handle values as lines.
#pragma once

#include "zelqa/base.h"

#include <cmath>
#include <cstdint>

namespace zq::devices {

// A number truncated towards zero, held to the 32-bit range.
inline int32_t wholeNumber(double x) {
    if (std::isnan(x))
        return 0;
    if (x >= 2147483647.0)
        return INT32_MAX;
    if (x <= -2147483648.0)
        return INT32_MIN;
    return static_cast<int32_t>(x);
}

// A number truncated and taken as a signed 16-bit value, as counts and baud rates are.
inline int16_t sixteenBitNumber(double x) { return static_cast<int16_t>(wholeNumber(x)); }

inline bool isNumber(pObj v) { return v && v->type == TYPE_NUMERIC; }
inline bool isText(pObj v) { return v && v->type == TYPE_CHAR; }
inline bool isHandle(pObj v) { return v && v->type == TYPE_HANDLE; }

// The line a handle value holds.
inline intptr_t lineOf(pObj handle) { return reinterpret_cast<intptr_t>(handle->payload.p); }

} // namespace zq::devices
