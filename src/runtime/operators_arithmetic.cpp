// Arithmetic operators: +, -, *, / and the increments, each result a fresh temporary.
//
// A missing operand is numeric 1. Dates go through __AddTod and __SubTod. The operands
// are read before the result slot is taken, since a ring that comes round may hand out
// an operand's own slot.
#include "runtime/operators.h"
#include "runtime/raise.h"
#include "zelqa/dates.h"
#include "zelqa/operators.h"
#include "zelqa/values.h"

#include <algorithm>
#include <cstring>
#include <string_view>

using namespace zq::runtime;

namespace {

bool numeric(pObj value) { return value->type == TYPE_NUMERIC; }

// Two texts joined into one temporary sized by both lengths.
pObj joinTexts(pObj a, pObj b) {
    std::string_view left = boundedTextOf(a), right = boundedTextOf(b);
    int32_t length = std::max(a->objLength - 1, 0) + std::max(b->objLength - 1, 0);
    TemporaryShield keepLeft(a), keepRight(b);
    pObj t = __ALLOC_CHARPTR(length);
    std::memcpy(t->payload.c, left.data(), left.size());
    std::memcpy(t->payload.c + left.size(), right.data(), right.size());
    return t;
}

pObj requireNumeric(pObj value) {
    requireArgument(value != nullptr && numeric(value));
    return value;
}

} // namespace

pObj __SUM(pObj a, pObj b) noexcept {
    a = operandOr(a, kOne);
    b = operandOr(b, kOne);
    switch (a->type) {
    case TYPE_CHAR:
        requireArgument(b->type == TYPE_CHAR);
        return joinTexts(a, b);
    case TYPE_DATE:
        return __AddTod(a, b);
    case TYPE_NUMERIC:
        requireArgument(numeric(b));
        return __INIT_DOUBLE(a->payload.d + b->payload.d);
    default: // logical, NIL, array, pointer: no result and no error, on purpose
        return nullptr;
    }
}

pObj __SUB(pObj a, pObj b) noexcept {
    a = operandOr(a, kOne);
    b = operandOr(b, kOne);
    if (a->type == TYPE_DATE)
        return __SubTod(a, b);
    requireArgument(numeric(a) && numeric(b));
    return __INIT_DOUBLE(a->payload.d - b->payload.d);
}

pObj __MUL(pObj a, pObj b) noexcept {
    a = operandOr(a, kOne);
    b = operandOr(b, kOne);
    requireArgument(numeric(a) && numeric(b));
    return __INIT_DOUBLE(a->payload.d * b->payload.d);
}

pObj __DIV(pObj a, pObj b) noexcept {
    a = operandOr(a, kOne);
    b = operandOr(b, kOne);
    requireArgument(numeric(a) && numeric(b));
    double divisor = b->payload.d;
    if (divisor == 0.0) // no "DIVIDE BY ZERO!": the result is the divisor itself
        return __INIT_DOUBLE(divisor);
    return __INIT_DOUBLE(a->payload.d / divisor);
}

pObj __PREINCREMENT(pObj a) noexcept {
    requireNumeric(a)->payload.d += 1.0;
    return a;
}

pObj __PREDECREMENT(pObj a) noexcept {
    requireNumeric(a)->payload.d -= 1.0;
    return a;
}

pObj __POSTINCREMENT(pObj a) noexcept {
    TemporaryShield keep(requireNumeric(a));
    pObj old = __INIT_DOUBLE(a->payload.d);
    a->payload.d += 1.0;
    return old;
}

pObj __POSTDECREMENT(pObj a) noexcept {
    TemporaryShield keep(requireNumeric(a));
    pObj old = __INIT_DOUBLE(a->payload.d);
    a->payload.d -= 1.0;
    return old;
}
