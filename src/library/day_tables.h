// The month lengths of common and leap years, and the day count behind day numbers.
#pragma once

#include "zelqa/dates.h"

#include <cstdint>

namespace zq::library {

// Row 0 for common years, row 1 for leap years.
inline constexpr uint32_t kMonthLengths[2][12] = {
    {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
    {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
};

// Days from 1 January of the year 1 to 30 December 1899, the day number 0.
inline constexpr int32_t kDaysToEpoch = 693594;

// The length of month 1..12 of the year.
inline uint32_t monthLength(uint32_t year, uint32_t month) {
    return kMonthLengths[__IsLeapYear(year)][month - 1];
}

} // namespace zq::library
