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

/* The local clock: today's date, and the time of day as "hh:mm:ss". */
ZQ_API pObj __Date(void) ZQ_NOEXCEPT;
ZQ_API pObj __Time(void) ZQ_NOEXCEPT;
/* The time of day as "hh:mm:ss" text (not a number of seconds). */
ZQ_API pObj __Seconds(void) ZQ_NOEXCEPT;
/* end - start of two "hh:mm:ss" texts as "hh:mm:ss"; an end before the start wraps
   round 32 bits (one second before gives "1193046:28:15"). */
ZQ_API pObj __ElapTime(pObj start, pObj end) ZQ_NOEXCEPT;

/* 1 (Sunday) to 7 (Saturday); the empty date is 7; 0 for anything but a date. */
ZQ_API pObj __Dow(pObj date) ZQ_NOEXCEPT;
/* Lower-case English names; the empty date is "saturday", its month "". */
ZQ_API pObj __CDow(pObj date) ZQ_NOEXCEPT;
ZQ_API pObj __CMonth(pObj date) ZQ_NOEXCEPT;
ZQ_API pObj __Day(pObj date) ZQ_NOEXCEPT;
ZQ_API pObj __Month(pObj date) ZQ_NOEXCEPT;
ZQ_API pObj __Year(pObj date) ZQ_NOEXCEPT;
/* (day + (month - 1) x length of the month) x 10000 + year; 0 for the empty date. */
ZQ_API pObj __JulianDate(pObj date) ZQ_NOEXCEPT;
/* A hexadecimal stamp of the date's year and the clock's time. */
ZQ_API pObj __GenTMS(pObj date) ZQ_NOEXCEPT;

/* Text to date under format (null: the date format setting). Texts under 8 characters
   and out-of-range parts give the empty date; an impossible date gives null. */
ZQ_API pObj __Ctod(pObj text, pObj format) ZQ_NOEXCEPT;
/* 1 when month and day lie in range (or all parts are 0, or the text is empty), else 0. */
ZQ_API int __IsValidDate(pObj text, pObj format) ZQ_NOEXCEPT;
/* Date to text under format (null: the date format setting); the empty date as blanks. */
ZQ_API pObj __Dtoc(pObj date, pObj format) ZQ_NOEXCEPT;
/* "yyyymmdd"; the empty date is "00000000". */
ZQ_API pObj __Dtos(pObj date) ZQ_NOEXCEPT;

/* Stores the format as the date format setting; null changes nothing. */
ZQ_API void __Set_DateFormat(pObj format) ZQ_NOEXCEPT;
/* Does nothing: the epoch is set through __Set. */
ZQ_API void __SetEpoch(pObj ignored) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
