/* zelqa/numbers.h: numbers as text, rounding and pictures. The decimal point is written
   as the locale decimal character. A non-numeric number raises "ARGUMENT ERROR!". */
#ifndef ZELQA_NUMBERS_H
#define ZELQA_NUMBERS_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

/* x by "%f" with the decimal character dc, trailing zeros and a bare dc removed. buf must
   hold 320 bytes. */
ZQ_API void printDouble(double x, char *buf, char dc) ZQ_NOEXCEPT;

/* len (absent, NIL or negative: 10) and dec (absent or NIL: 0; negative: 10); rounded
   half away from zero; padded on the left, never cut. __StrZero pads with zeros (before
   a sign) and keeps two decimals when the third is 0. */
ZQ_API pObj __Str(pObj number, pObj len, pObj dec) ZQ_NOEXCEPT;
ZQ_API pObj __StrZero(pObj number, pObj len, pObj dec) ZQ_NOEXCEPT;

/* Rounds when the fraction reaches 0.49999999999999. */
ZQ_API pObj __Round(pObj number, pObj decimals) ZQ_NOEXCEPT;
/* Cuts to the decimals through text; a negative number gives 0. */
ZQ_API pObj NOROUND(pObj number, pObj decimals) ZQ_NOEXCEPT;

/* 1 "@!", 2 "@R", 3 "@E", 4 "@D" by the first two bytes; else 0. */
ZQ_API int __GetMaskType(const char *picture) ZQ_NOEXCEPT;
/* The value through a picture; a picture of none of the four functions gives the value
   itself, an empty value an empty text, no value NIL. */
ZQ_API pObj __Transform(pObj value, pObj picture) ZQ_NOEXCEPT;
/* The input places of the picture of user-interface object n; NIL when it has none. */
ZQ_API pObj __PictureSize(pObj n) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
