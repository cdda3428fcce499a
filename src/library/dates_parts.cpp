// Parts and names of a date: day of week, day and month names, day, month, year, and the
// day-times-month number __JulianDate makes.
#include "library/arguments.h"
#include "library/day_tables.h"
#include "zelqa/dates.h"
#include "zelqa/values.h"

#include <cmath>

using namespace zq::library;

namespace {

constexpr const char *kDayNames[7] = {"sunday", "monday", "tuesday", "wednesday",
                                      "thursday", "friday", "saturday"};
// The tenth month's spelling is the one programs have always printed.
constexpr const char *kMonthNames[12] = {"january", "february", "march", "april", "may", "june",
                                         "july", "august", "september", "octuber", "november", "december"};

// fmod of the day number by 7, truncated: 1 is Sunday; 0 or below stands for Saturday.
int weekDay(double dayNumber) {
    double n = std::fmod(dayNumber, 7.0);
    return std::isnan(n) ? 0 : static_cast<int>(n);
}

struct Decoded {
    uint32_t year, month, day;
};

Decoded decode(pObj date) {
    Decoded parts{};
    __DecodeDate(requireDate(date), &parts.year, &parts.month, &parts.day);
    return parts;
}

} // namespace

pObj __Dow(pObj date) noexcept {
    if (!isDate(date))
        return __INIT_DOUBLE(0);
    int n = weekDay(date->payload.d);
    return __INIT_DOUBLE(n <= 0 ? 7 : n);
}

pObj __CDow(pObj date) noexcept {
    int n = weekDay(requireDate(date));
    return __INIT_CHARPTR(n <= 0 ? "saturday" : kDayNames[n - 1]);
}

pObj __CMonth(pObj date) noexcept {
    Decoded d = decode(date);
    return __INIT_CHARPTR(d.month == 0 ? "" : kMonthNames[d.month - 1]);
}

pObj __Day(pObj date) noexcept { return __INIT_DOUBLE(decode(date).day); }

pObj __Month(pObj date) noexcept { return __INIT_DOUBLE(decode(date).month); }

pObj __Year(pObj date) noexcept { return __INIT_DOUBLE(decode(date).year); }

pObj __JulianDate(pObj date) noexcept {
    Decoded d = decode(date);
    if (d.month == 0)
        return __INIT_DOUBLE(0); // the empty date has no month whose length could be taken
    // The length of the date's own month, not of the months before it.
    int32_t length = static_cast<int32_t>(monthLength(d.year, d.month));
    int32_t k = static_cast<int32_t>(d.month - 1) * length;
    return __INIT_DOUBLE((static_cast<int32_t>(d.day) + k) * 10000 + static_cast<int32_t>(d.year));
}
