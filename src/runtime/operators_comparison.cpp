// Ordering operators: <, >, >= and <= over texts, dates and numbers.
//
// A missing operand is numeric 1. The left operand's type decides, and the right one
// must be of the same type; texts are ordered by unsigned bytes up to the first NUL.
// Numbers are compared directly, so a NaN makes every ordering false.
#include "runtime/operators.h"
#include "runtime/raise.h"
#include "zelqa/operators.h"

#include <cstring>
#include <functional>

using namespace zq::runtime;

namespace {

template <typename Relation>
pObj compare(pObj a, pObj b, Relation holds) {
    a = operandOr(a, kOne);
    b = operandOr(b, kOne);
    requireArgument(a->type == b->type);
    switch (a->type) {
    case TYPE_CHAR: // strcmp orders by unsigned bytes
        return logical(holds(std::strcmp(textOf(a), textOf(b)), 0));
    case TYPE_DATE:
    case TYPE_NUMERIC:
        return logical(holds(a->payload.d, b->payload.d));
    default:
        raiseError(ZQ_ERR_ARGUMENT);
    }
}

} // namespace

pObj __LS(pObj a, pObj b) noexcept { return compare(a, b, std::less<>()); }

pObj __GT(pObj a, pObj b) noexcept { return compare(a, b, std::greater<>()); }

pObj __GTE(pObj a, pObj b) noexcept { return compare(a, b, std::greater_equal<>()); }

pObj __LSE(pObj a, pObj b) noexcept { return compare(a, b, std::less_equal<>()); }
