// Day numbers: encoding calendar dates, decoding them, and the time stamp in between.
//
// The arithmetic is the 32-bit one of the original runtime: a date before 30 December
// 1899 becomes a very large day number, and the time stamp's odd offset is kept.
#include "library/arguments.h"
#include "library/day_tables.h"
#include "runtime/context.h"
#include "runtime/settings.h"
#include "zelqa/dates.h"
#include "zelqa/values.h"

#include <cmath>

namespace {

using zq::library::kDaysToEpoch;
using zq::library::kMonthLengths;

constexpr int kEpochSetting = 5;

// The first year of the two-digit window; a setting below 1900 is raised to 1900 for good.
int32_t epochYear() {
    zq::runtime::RuntimeContext *ctx = zq::runtime::existingContext();
    if (!ctx)
        return 1940;
    pObj epoch = ctx->settings[kEpochSetting - 1];
    if (!epoch || epoch->type != TYPE_NUMERIC)
        return 1940;
    if (epoch->payload.d < 1900)
        epoch = zq::runtime::storeSetting(kEpochSetting, __INIT_DOUBLE(1900.0));
    return zq::library::truncated(epoch->payload.d);
}

// The date field as a 32-bit count, wrapping as 32-bit arithmetic does: the large day
// numbers of dates before 30 December 1899 come back to those dates.
uint32_t dayCount(double field) {
    if (!(std::fabs(field) < 9.0e18))
        return 0; // NaN and the infinities name no day
    return static_cast<uint32_t>(static_cast<int64_t>(field));
}

} // namespace

int __IsLeapYear(uint32_t year) noexcept {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int __DoEncodeDate(uint32_t y, uint32_t m, uint32_t d, double *out, int32_t extraDays) noexcept {
    if (m == 0 || d == 0) {
        *out = 0.0;
        return y == 0 && m == 0 && d == 0;
    }
    int32_t epoch = epochYear();
    if (y < 100) {
        uint32_t century = 100 * static_cast<uint32_t>(std::floor(epoch * 0.01));
        y += century;
        if (static_cast<int32_t>(y) < epoch)
            y += 100;
    }
    const uint32_t *lengths = kMonthLengths[__IsLeapYear(y)];
    if (y > 9999 || m > 12 || d > lengths[m - 1])
        return 0;
    uint32_t dayOfYear = d;
    for (uint32_t i = 0; i + 1 < m; ++i)
        dayOfYear += lengths[i];
    uint32_t prior = y - 1;
    uint32_t days = prior * 365 + prior / 4 - prior / 100 + prior / 400 + dayOfYear +
                    static_cast<uint32_t>(extraDays) - static_cast<uint32_t>(kDaysToEpoch);
    *out = static_cast<double>(days); // negative counts wrap to large numbers, on purpose
    return 1;
}

double __EncodeDate(uint32_t y, uint32_t m, uint32_t d) noexcept {
    double day = 0.0;
    return __DoEncodeDate(y, m, d, &day, 0) ? day : 0.0;
}

TimeStamp *__DateTimeToTimeStamp(TimeStamp *stamp, double day) noexcept {
    if (day == 0.0) {
        stamp->date = stamp->time = 0.0;
        return stamp;
    }
    stamp->date = std::floor(day) + kDaysToEpoch;
    stamp->time = (day - stamp->date) * 86400000.0;
    return stamp;
}

void __DecodeDate(double day, uint32_t *y, uint32_t *m, uint32_t *d) noexcept {
    TimeStamp stamp;
    __DateTimeToTimeStamp(&stamp, day);
    uint32_t D = dayCount(stamp.date);
    if (D == 0) {
        *y = *m = *d = 0;
        return;
    }
    uint32_t T = D - 1, Y = 1;
    Y += 400 * (T / 146097);
    T %= 146097;
    uint32_t I = T / 36524;
    T %= 36524;
    if (I == 4) {
        I = 3;
        T += 36524;
    }
    Y += I * 100;
    Y += 4 * (T / 1461);
    T %= 1461;
    I = T / 365;
    T %= 365;
    if (I == 4) {
        I = 3;
        T = 365;
    }
    Y += I;
    const uint32_t *lengths = kMonthLengths[__IsLeapYear(Y)];
    uint32_t month = 0;
    while (month < 11 && T >= lengths[month])
        T -= lengths[month++];
    *y = Y;
    *m = month + 1;
    *d = T + 1;
}
