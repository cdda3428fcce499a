// Reading the value arguments of the table built-ins.
#pragma once

#include "runtime/raise.h"
#include "zelqa/base.h"

#include <cstdint>
#include <string>

namespace zq::tables {

// An absent optional argument: a null pointer or NIL.
inline bool isMissing(pObj x) { return !x || x->type == TYPE_NIL; }

inline bool isNumber(pObj x) { return x && (x->type == TYPE_NUMERIC || x->type == TYPE_LONG); }

// A numeric or long argument's value; anything else is ARGUMENT ERROR!.
inline double requireNumber(pObj x) {
    runtime::requireArgument(isNumber(x));
    return x->type == TYPE_LONG ? double(x->payload.l) : x->payload.d;
}

// A number's integer part, NaN as 0 and values beyond 2^53 held there, so that any
// numeric argument converts safely.
inline int64_t wholeNumber(double d) {
    constexpr double limit = 9007199254740992.0;
    if (!(d == d))
        return 0;
    return int64_t(d < -limit ? -limit : (d > limit ? limit : d));
}

// A numeric or long argument's integer part; anything else is ARGUMENT ERROR!.
inline int64_t requireWhole(pObj x) { return wholeNumber(requireNumber(x)); }

// A character argument's text ("" without a buffer); anything else is ARGUMENT ERROR!.
inline std::string requireText(pObj x) {
    runtime::requireArgument(x && x->type == TYPE_CHAR);
    return x->payload.c && x->objLength > 0 ? std::string(x->payload.c) : std::string();
}

// ASCII letters in capitals, other bytes as they are.
inline std::string upperText(std::string text) {
    for (char &c : text)
        if (c >= 'a' && c <= 'z')
            c = char(c - 32);
    return text;
}

} // namespace zq::tables
