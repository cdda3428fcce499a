/* zelqa/strings.h: the character built-ins. Texts are bytes; results are fresh text
   temporaries unless said otherwise. A text argument of another type, or absent where it
   is required, raises "ARGUMENT ERROR!", as does a count or width that is not numeric. */
#ifndef ZELQA_STRINGS_H
#define ZELQA_STRINGS_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

/* Trims spaces (byte 32) only. __LTrim returns the value itself when it has no leading space. */
ZQ_API pObj __AllTrim(pObj text) ZQ_NOEXCEPT;
ZQ_API pObj __LTrim(pObj text) ZQ_NOEXCEPT;
ZQ_API pObj __RTrim(pObj text) ZQ_NOEXCEPT;

/* ASCII letters only; null for an absent argument. */
ZQ_API pObj __Upper(pObj text) ZQ_NOEXCEPT;
ZQ_API pObj __Lower(pObj text) ZQ_NOEXCEPT;

/* The first byte, 0..255 (0 for an empty text). */
ZQ_API pObj __Asc(pObj text) ZQ_NOEXCEPT;
/* A text of the number's low byte; code 0 gives an empty text of length field 2. */
ZQ_API pObj __Chr(pObj code) ZQ_NOEXCEPT;

/* 1-based place of the first (__At) or last (__Rat, overlaps counted) occurrence, or 0.
   An empty needle is at 1 for __At and never found by __Rat. */
ZQ_API pObj __At(pObj needle, pObj haystack) ZQ_NOEXCEPT;
ZQ_API pObj __Rat(pObj needle, pObj haystack) ZQ_NOEXCEPT;

/* Text to number (rightmost ',' or '.' is the decimal one); null for an absent argument,
   anything but a text handed back as it is. */
ZQ_API pObj __Val(pObj text) ZQ_NOEXCEPT;

/* A count of 0 or less returns the value itself. */
ZQ_API pObj __Left(pObj text, pObj count) ZQ_NOEXCEPT;
ZQ_API pObj __Right(pObj text, pObj count) ZQ_NOEXCEPT;
/* From start (1-based; below 1 is 1) for count bytes (absent: to the end). A start past
   the text or a count of 0 or less gives the whole text. */
ZQ_API pObj __SubStr(pObj text, pObj start, pObj count) ZQ_NOEXCEPT;

/* Padding never truncates: a text as wide as the width is returned as the value itself.
   __PadR's fill may be absent (a space); __PadL and __PadC need one. */
ZQ_API pObj __PadR(pObj text, pObj width, pObj fill) ZQ_NOEXCEPT;
ZQ_API pObj __Pad(pObj text, pObj width, pObj fill) ZQ_NOEXCEPT;
ZQ_API pObj __PadL(pObj text, pObj width, pObj fill) ZQ_NOEXCEPT;
/* One copy of the fill inserted at (width - 1) / 2. */
ZQ_API pObj __PadC(pObj text, pObj width, pObj fill) ZQ_NOEXCEPT;

/* count copies (a fraction rounds up); __Space: count blanks, "LOW MEMORY!" below 0. */
ZQ_API pObj __Replicate(pObj text, pObj count) ZQ_NOEXCEPT;
ZQ_API pObj __Space(pObj count) ZQ_NOEXCEPT;

/* Replaces every occurrence at or after start (1-based; absent or 0: the start), or
   only the first when count is negative; null when start lies beyond the text. */
ZQ_API pObj __StrTran(pObj text, pObj search, pObj with, pObj start, pObj count) ZQ_NOEXCEPT;
/* The first start bytes, then insert, then the text from start + remove on; null when
   start or remove reaches past the text. */
ZQ_API pObj __Stuff(pObj text, pObj start, pObj remove, pObj insert) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
