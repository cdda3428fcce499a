// Equality operators: "=" with its prefix rule for texts, and "==" comparing in full.
//
// NIL on the right is accepted under any left operand and is equal only to NIL; NIL on
// the left with anything else on the right is an error. A missing operand is NIL.
#include "runtime/operators.h"
#include "runtime/raise.h"
#include "zelqa/operators.h"

#include <algorithm>
#include <cstring>

using namespace zq::runtime;

namespace {

// "=" on texts: the shorter one, by objLength, is a prefix of the other; an empty text
// is never equal, not even to another empty text.
bool prefixEqual(pObj a, pObj b) {
    int m = std::min(a->objLength, b->objLength);
    if (m <= 1 || !a->payload.c || !b->payload.c)
        return false;
    return std::strncmp(a->payload.c, b->payload.c, static_cast<size_t>(m - 1)) == 0;
}

bool fullEqual(pObj a, pObj b) { return std::strcmp(textOf(a), textOf(b)) == 0; }

pObj equal(pObj a, pObj b, bool (*textsEqual)(pObj, pObj)) {
    a = operandOr(a, kNil);
    b = operandOr(b, kNil);
    if (b->type == TYPE_NIL)
        return logical(a->type == TYPE_NIL);
    requireArgument(a->type == b->type);
    switch (a->type) {
    case TYPE_CHAR:
        return logical(textsEqual(a, b));
    case TYPE_DATE:
    case TYPE_NUMERIC:
        return logical(a->payload.d == b->payload.d);
    case TYPE_LOGICAL: // payloads, not truth: two different non-zero trues differ
        return logical(a->payload.l == b->payload.l);
    default:
        raiseError(ZQ_ERR_ARGUMENT);
    }
}

} // namespace

pObj __EQ(pObj a, pObj b) noexcept { return equal(a, b, prefixEqual); }

pObj __EEQ(pObj a, pObj b) noexcept { return equal(a, b, fullEqual); }
