/* zelqa/operators.h: the language's operators, one function each.
   Comparisons and logical operators return the shared false and true constants;
   arithmetic returns a temporary. A null operand stands for the operator's default
   (numeric 1 for ordering and arithmetic, NIL for equality, true for AND and OR).
   A type combination an operator does not take raises "ARGUMENT ERROR!". */
#ifndef ZELQA_OPERATORS_H
#define ZELQA_OPERATORS_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

/* Ordering: character (unsigned bytes to the NUL), date or numeric, both sides alike. */
ZQ_API pObj __LS(pObj a, pObj b) ZQ_NOEXCEPT;
ZQ_API pObj __GT(pObj a, pObj b) ZQ_NOEXCEPT;
ZQ_API pObj __GTE(pObj a, pObj b) ZQ_NOEXCEPT;
ZQ_API pObj __LSE(pObj a, pObj b) ZQ_NOEXCEPT;

/* "=": the shorter text is compared as a prefix of the other, and an empty text is
   never equal. x = NIL holds for NIL x only; NIL = x is an error for non-NIL x. */
ZQ_API pObj __EQ(pObj a, pObj b) ZQ_NOEXCEPT;
/* "==": as "=", but texts are equal only when identical. */
ZQ_API pObj __EEQ(pObj a, pObj b) ZQ_NOEXCEPT;

ZQ_API pObj __AND(pObj a, pObj b) ZQ_NOEXCEPT;
ZQ_API pObj __OR(pObj a, pObj b) ZQ_NOEXCEPT;
/* Numeric: negated temporary; logical: the opposite constant; NIL: true. */
ZQ_API pObj __INV(pObj a) ZQ_NOEXCEPT;

/* Texts joined, date plus days, or the sum; a logical, NIL, array or pointer on the
   left gives null and raises nothing. */
ZQ_API pObj __SUM(pObj a, pObj b) ZQ_NOEXCEPT;
/* Date minus date (days), date minus days (date), or the difference. */
ZQ_API pObj __SUB(pObj a, pObj b) ZQ_NOEXCEPT;
ZQ_API pObj __MUL(pObj a, pObj b) ZQ_NOEXCEPT;
/* A zero divisor gives a temporary holding the divisor. */
ZQ_API pObj __DIV(pObj a, pObj b) ZQ_NOEXCEPT;

/* ++x and --x change the numeric operand in place and return it. */
ZQ_API pObj __PREINCREMENT(pObj a) ZQ_NOEXCEPT;
ZQ_API pObj __PREDECREMENT(pObj a) ZQ_NOEXCEPT;
/* x++ and x-- return a temporary with the old value, then change the operand. */
ZQ_API pObj __POSTINCREMENT(pObj a) ZQ_NOEXCEPT;
ZQ_API pObj __POSTDECREMENT(pObj a) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
