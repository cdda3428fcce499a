// Helpers the library tests share: making argument values and reading results.
#pragma once

#include "support/fresh_runtime.h"
#include "zelqa.h"

#include <string>

namespace zq::library_test {

inline pObj text(const std::string &s) { return __INIT_CHARPTR(s.c_str()); }
inline pObj num(double d) { return __INIT_DOUBLE(d); }
inline pObj date(uint32_t y, uint32_t m, uint32_t d) { return __INIT_DATE(__EncodeDate(y, m, d)); }
inline pObj emptyDate() { return __INIT_DATE(0.0); }

// A text result up to its NUL; "<null>" for no value and "<type N>" for another type.
inline std::string str(pObj v) {
    if (!v)
        return "<null>";
    if (v->type != TYPE_CHAR)
        return "<type " + std::to_string(v->type) + ">";
    return v->payload.c ? v->payload.c : "";
}

// A numeric or date result's payload; NaN for no value or another type.
inline double number(pObj v) {
    return v && (v->type == TYPE_NUMERIC || v->type == TYPE_DATE) ? v->payload.d : 0.0 / 0.0;
}

// Sets a setting through the language's __Set.
inline void setting(int n, pObj value) { __Set(num(n), value); }

} // namespace zq::library_test
