// Argument checks, text views and text results shared by the built-in functions.
//
// A built-in reads its arguments completely before it takes its result from the ring of
// temporaries: a ring that comes round may hand out an argument's own slot, and its text
// goes with it. Where the result is written straight from an argument's bytes, the
// argument is shielded (runtime::TemporaryShield) while the result is made.
#pragma once

#include "runtime/operators.h"
#include "runtime/raise.h"
#include "zelqa/base.h"

#include <cstdint>
#include <string_view>

namespace zq::library {

inline bool isText(pObj x) { return x && x->type == TYPE_CHAR; }
inline bool isNumber(pObj x) { return x && x->type == TYPE_NUMERIC; }
inline bool isDate(pObj x) { return x && x->type == TYPE_DATE; }

// Each returns the argument and raises "ARGUMENT ERROR!" when it is absent or of another type.
inline pObj requireText(pObj x) {
    runtime::requireArgument(isText(x));
    return x;
}
inline double requireNumber(pObj x) {
    runtime::requireArgument(isNumber(x));
    return x->payload.d;
}
inline double requireDate(pObj x) {
    runtime::requireArgument(isDate(x));
    return x->payload.d;
}

// The views below never have a null data pointer, so their bytes may go to memcpy as
// they are, empty or not.

// The text up to its first NUL, never past objLength - 1 bytes; no buffer reads as "".
inline std::string_view textOf(pObj text) {
    std::string_view s = runtime::boundedTextOf(text);
    return s.data() ? s : std::string_view("");
}

// All objLength - 1 bytes of a text's buffer, NULs included; no buffer reads as "".
inline std::string_view bufferOf(pObj text) {
    if (!text->payload.c || text->objLength <= 1)
        return std::string_view("");
    return {text->payload.c, static_cast<size_t>(text->objLength - 1)};
}

// A number truncated toward zero and held to the 32-bit range; NaN gives 0.
int32_t truncated(double x);

// A fresh text temporary of n zero bytes; "LOW MEMORY!" when n cannot be held.
pObj newText(int64_t n);
// A fresh text temporary holding these bytes. The bytes must not lie in a temporary that
// the ring may hand out (shield it).
pObj freshText(std::string_view bytes);

// Fills `total` bytes at out with copies of a non-empty unit, the last copy cut to fit.
// Each step copies everything written so far, so the time is linear in total.
void fillWithCopies(char *out, std::string_view unit, size_t total);

} // namespace zq::library
