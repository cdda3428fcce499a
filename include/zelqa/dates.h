/* zelqa/dates.h: day numbers (days since 30 December 1899; 0 is the empty date). */
#ifndef ZELQA_DATES_H
#define ZELQA_DATES_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

typedef struct { double time; double date; } TimeStamp;

ZQ_API int __IsLeapYear(uint32_t year) ZQ_NOEXCEPT;
/* 1 and the day number in *out, or 0 with *out untouched for an impossible date. */
ZQ_API int __DoEncodeDate(uint32_t y, uint32_t m, uint32_t d, double *out, int32_t extraDays) ZQ_NOEXCEPT;
ZQ_API double __EncodeDate(uint32_t y, uint32_t m, uint32_t d) ZQ_NOEXCEPT; /* 0.0 when invalid */
ZQ_API void __DecodeDate(double day, uint32_t *y, uint32_t *m, uint32_t *d) ZQ_NOEXCEPT;
ZQ_API TimeStamp *__DateTimeToTimeStamp(TimeStamp *stamp, double day) ZQ_NOEXCEPT;

/* A date plus the whole part of a number of days; a result not above 0 is an error. */
ZQ_API pObj __AddTod(pObj date, pObj days) ZQ_NOEXCEPT;
/* A date minus a date gives days (numeric); minus a number gives a date. */
ZQ_API pObj __SubTod(pObj a, pObj b) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
