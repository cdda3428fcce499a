// Logical operators: AND and OR over two logicals, and NOT/negation of one operand.
#include "runtime/operators.h"
#include "runtime/raise.h"
#include "zelqa/operators.h"
#include "zelqa/values.h"

using namespace zq::runtime;

namespace {

// Both operands are always evaluated by the caller; a missing one counts as true.
template <typename Combine>
pObj combine(pObj a, pObj b, Combine op) {
    a = operandOr(a, kTrue);
    b = operandOr(b, kTrue);
    requireArgument(a->type == TYPE_LOGICAL && b->type == TYPE_LOGICAL);
    return logical(op(a->payload.l != 0, b->payload.l != 0));
}

} // namespace

pObj __AND(pObj a, pObj b) noexcept {
    return combine(a, b, [](bool x, bool y) { return x && y; });
}

pObj __OR(pObj a, pObj b) noexcept {
    return combine(a, b, [](bool x, bool y) { return x || y; });
}

pObj __INV(pObj a) noexcept {
    requireArgument(a != nullptr);
    switch (a->type) {
    case TYPE_NUMERIC:
        return __INIT_DOUBLE(a->payload.d * -1.0);
    case TYPE_LOGICAL:
        return logical(a->payload.l == 0);
    case TYPE_NIL: // NOT NIL is true, on purpose
        return logical(true);
    default:
        raiseError(ZQ_ERR_ARGUMENT);
    }
}
