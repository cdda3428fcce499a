// Tests and choices over values of any type: __Len, __Type, __Empty, __If, __Max, __Min.
#include "library/value_tests.h"

#include "library/arguments.h"
#include "runtime/arrays.h"
#include "runtime/context.h"
#include "zelqa/math.h"
#include "zelqa/values.h"

using namespace zq::library;
using zq::runtime::requireArgument;

namespace zq::library {

bool isEmptyValue(pObj v) {
    if (v->storageClass == CLASS_ARRAY && v->type == TYPE_ARRAY)
        return !v->payload.a || v->payload.a->count == 0;
    switch (v->type) {
    case TYPE_CHAR:
        return !v->payload.c || textOf(v).find_first_not_of(' ') == std::string_view::npos;
    case TYPE_DATE:
    case TYPE_NUMERIC:
        return v->payload.d == 0.0; // NaN is not empty
    case TYPE_LOGICAL:
        return v->payload.l != 1;
    default:
        return true;
    }
}

} // namespace zq::library

pObj __Len(pObj v) noexcept {
    requireArgument(v != nullptr);
    if (v->type == TYPE_CHAR)
        return __INIT_DOUBLE(static_cast<double>(textOf(v).size()));
    pObj array = zq::runtime::arrayOf(v);
    requireArgument(array != nullptr);
    return __INIT_DOUBLE(array->payload.a->count);
}

pObj __Type(pObj v) noexcept {
    requireArgument(v != nullptr);
    switch (v->type) {
    case TYPE_CHAR: return __INIT_CHARPTR("C");
    case TYPE_ARRAY: return __INIT_CHARPTR("A");
    case TYPE_DATE: return __INIT_CHARPTR("D");
    case TYPE_NUMERIC: return __INIT_CHARPTR("N");
    case TYPE_LOGICAL: return __INIT_CHARPTR("L");
    default: return __INIT_CHARPTR("U");
    }
}

pObj __Empty(pObj v) noexcept {
    requireArgument(v != nullptr);
    return __INIT_BOOL(isEmptyValue(v));
}

pObj __If(int condition, pObj a, pObj b) noexcept {
    requireArgument(a && b && a->type == b->type);
    return condition ? a : b;
}

namespace {

void requireOrdered(pObj a, pObj b) {
    requireArgument(a && b && a->type == b->type && (a->type == TYPE_NUMERIC || a->type == TYPE_DATE));
}

} // namespace

pObj __Max(pObj a, pObj b) noexcept {
    requireOrdered(a, b);
    return a->payload.d <= b->payload.d ? b : a; // a tie gives the second
}

pObj __Min(pObj a, pObj b) noexcept {
    requireOrdered(a, b);
    return a->payload.d >= b->payload.d ? b : a;
}
