// Helpers of the array and context tests: building arrays of numbers and texts, reading
// them back, and expecting a runtime error from a statement.
#pragma once

#include "support/refused_call.h"
#include "zelqa.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

namespace zq::test {

inline pObj numbers(std::initializer_list<double> values) {
    pObj a = __CreateArray(__INIT_NUL());
    for (double v : values)
        __AAdd(a, __INIT_DOUBLE(v));
    return a;
}

inline pObj texts(std::initializer_list<const char *> values) {
    pObj a = __CreateArray(__INIT_NUL());
    for (const char *v : values)
        __AAdd(a, __INIT_CHARPTR(v));
    return a;
}

// The numeric payloads of a's elements, in order.
inline std::vector<double> numbersOf(pObj a) {
    std::vector<double> out;
    for (pObj el = a->payload.a->first; el; el = el->next)
        out.push_back(el->payload.d);
    return out;
}

inline std::vector<std::string> textsOf(pObj a) {
    std::vector<std::string> out;
    for (pObj el = a->payload.a->first; el; el = el->next)
        out.push_back(el->payload.c ? el->payload.c : "<none>");
    return out;
}

inline pObj at(pObj a, int32_t position) { return __GET_ARRAY_EL(a, position - 1); }

} // namespace zq::test
