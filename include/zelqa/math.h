/* zelqa/math.h: numeric built-ins, type and emptiness tests, choices between values,
   character classes and the CPF and CNPJ (CGC) validators. Logical results are the
   shared constants. Wrong types raise "ARGUMENT ERROR!". */
#ifndef ZELQA_MATH_H
#define ZELQA_MATH_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

ZQ_API pObj __Abs(pObj x) ZQ_NOEXCEPT;
ZQ_API pObj __Sqrt(pObj x) ZQ_NOEXCEPT; /* NaN below 0 */
ZQ_API pObj __Exp(pObj x) ZQ_NOEXCEPT;
ZQ_API pObj __Log(pObj x) ZQ_NOEXCEPT;
ZQ_API pObj __Log_10(pObj x) ZQ_NOEXCEPT;
ZQ_API pObj __POW(pObj x, pObj y) ZQ_NOEXCEPT;
/* Rounded to one decimal first, then cut toward zero: 2.96 gives 3. */
ZQ_API pObj __Int(pObj x) ZQ_NOEXCEPT;
/* fmod(a, b); b = 0 is an argument error. */
ZQ_API pObj __FMOD(pObj a, pObj b) ZQ_NOEXCEPT;
/* The value's payload read as a number: the identity for numbers. */
ZQ_API pObj __Bin2I(pObj x) ZQ_NOEXCEPT;
ZQ_API pObj __Bin2L(pObj x) ZQ_NOEXCEPT;
ZQ_API pObj __Bin2W(pObj x) ZQ_NOEXCEPT;
ZQ_API pObj __I2Bin(pObj x) ZQ_NOEXCEPT;
ZQ_API pObj __L2Bin(pObj x) ZQ_NOEXCEPT;
ZQ_API pObj __W2Bin(pObj x) ZQ_NOEXCEPT;

/* Bytes of a text up to its NUL, or elements of an array. */
ZQ_API pObj __Len(pObj v) ZQ_NOEXCEPT;
/* "C", "A", "D", "N", "L" or "U". */
ZQ_API pObj __Type(pObj v) ZQ_NOEXCEPT;
ZQ_API pObj __Empty(pObj v) ZQ_NOEXCEPT;
/* a when c is non-zero, else b (the records themselves; same types required). */
ZQ_API pObj __If(int c, pObj a, pObj b) ZQ_NOEXCEPT;
/* Numbers or dates of one type; a tie gives the second record. */
ZQ_API pObj __Max(pObj a, pObj b) ZQ_NOEXCEPT;
ZQ_API pObj __Min(pObj a, pObj b) ZQ_NOEXCEPT;

/* Classes of the first byte (ASCII only); digits count as alphabetic. */
ZQ_API pObj __IsAlpha(pObj text) ZQ_NOEXCEPT;
ZQ_API pObj __IsDigit(pObj text) ZQ_NOEXCEPT;
ZQ_API pObj __IsUpper(pObj text) ZQ_NOEXCEPT;
ZQ_API pObj __IsLower(pObj text) ZQ_NOEXCEPT;
ZQ_API pObj __IsPrint(pObj text) ZQ_NOEXCEPT;

/* Check digits of an 11-byte CPF and a 14-byte CNPJ; any other length is false. */
ZQ_API pObj __ValidCPF(pObj text) ZQ_NOEXCEPT;
ZQ_API pObj __ValidCGC(pObj text) ZQ_NOEXCEPT;

/* The phonetic form of text by the phonetic library's entry "ALPHA2" (mode "F..." or
   other); an empty text when the library, its entry or the routine fails. */
ZQ_API pObj __Fonetizar(pObj mode, pObj text) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
