// The local clock's built-ins: today's date, the time of day as hh:mm:ss, the time
// between two such texts, and the hexadecimal time stamp of __GenTMS.
#include "library/arguments.h"
#include "library/day_tables.h"
#include "library/integer_text.h"
#include "platform/files.h"
#include "zelqa/dates.h"
#include "zelqa/values.h"

#include <cstdio>
#include <cstdlib>

using namespace zq::library;

namespace {

pObj clockText(uint32_t hours, uint32_t minutes, uint32_t seconds) {
    char text[40];
    std::snprintf(text, sizeof text, "%02u:%02u:%02u", hours, minutes, seconds);
    return __INIT_CHARPTR(text);
}

// Seconds since midnight of an hh:mm:ss text: two characters each at 0, 3 and 6, so any
// separators will do.
uint32_t secondsOfDay(std::string_view text) {
    auto part = [text](size_t at) {
        return at < text.size() ? integerOfText(text.substr(at, 2)) : 0;
    };
    return static_cast<uint32_t>((part(0) * 60 + part(3)) * 60 + part(6));
}

// The first whole number of a text, kept to its low 32 bits.
uint32_t low32Bits(const char *text) {
    return static_cast<uint32_t>(std::strtoll(text, nullptr, 10));
}

} // namespace

pObj __Date(void) noexcept {
    zq::platform::LocalTime now = zq::platform::localTime();
    return __INIT_DATE(__EncodeDate(now.year, now.month, now.day));
}

pObj __Time(void) noexcept {
    zq::platform::LocalTime now = zq::platform::localTime();
    return clockText(now.hour, now.minute, now.second);
}

pObj __ElapTime(pObj start, pObj end) noexcept {
    std::string_view from = textOf(requireText(start));
    std::string_view to = textOf(requireText(end));
    // Unsigned on purpose: an end before the start is not folded over midnight.
    uint32_t s = secondsOfDay(to) - secondsOfDay(from);
    return clockText(s / 3600, s % 3600 / 60, s % 60);
}

pObj __Seconds(void) noexcept {
    // The time of day as text, not a count of seconds: programs print it as it is.
    return __ElapTime(__INIT_CHARPTR("00:00:00"), __Time());
}

pObj __GenTMS(pObj date) noexcept {
    uint32_t year = 0, month = 0, day = 0;
    __DecodeDate(requireDate(date), &year, &month, &day);
    zq::platform::LocalTime now = zq::platform::localTime();
    // The December length times eleven plus thirty days of minutes; the hour is added to
    // the minutes, not multiplied, as stamps have always been made.
    int64_t minutes = int64_t{kMonthLengths[__IsLeapYear(year)][11]} * 11 + 30;
    int64_t v = (minutes * 1440 + now.minute + now.hour) * 60 + now.second;
    char joined[48];
    std::snprintf(joined, sizeof joined, "%lld%lld", static_cast<long long>(int64_t{year} - 2000),
                  static_cast<long long>(v));
    char text[16];
    std::snprintf(text, sizeof text, "%x", low32Bits(joined));
    return __INIT_CHARPTR(text);
}
