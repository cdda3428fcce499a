// Dates: day numbers and their wrap before 1899, the epoch window, parts and names, text
// in both directions under formats, the clock built-ins and the date settings.
#include "library/library_support.h"
#include "platform/files.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <vector>

using namespace zq::library_test;

namespace {

class Dates : public zq::test::FreshRuntime {};

constexpr int kEpoch = 5, kDateFormat = 4;

TEST_F(Dates, DayNumbersCountFrom30December1899AndWrapBeforeIt) {
    EXPECT_EQ(__EncodeDate(1899, 12, 30), 0.0);
    EXPECT_EQ(__EncodeDate(1899, 12, 31), 1.0);
    EXPECT_EQ(__EncodeDate(1900, 1, 1), 2.0);
    EXPECT_EQ(__EncodeDate(1899, 12, 29), 4294967295.0);
    EXPECT_EQ(__EncodeDate(2006, 11, 23), 39044.0);
    EXPECT_EQ(__EncodeDate(9999, 12, 31), 2958465.0);
    // Impossible parts encode as 0 and report failure; the empty date succeeds.
    double out = -1;
    EXPECT_EQ(__DoEncodeDate(2006, 2, 29, &out, 0), 0);
    EXPECT_EQ(out, -1);
    EXPECT_EQ(__DoEncodeDate(10000, 1, 1, &out, 0), 0);
    EXPECT_EQ(__DoEncodeDate(2006, 13, 1, &out, 0), 0);
    EXPECT_EQ(__DoEncodeDate(0, 0, 0, &out, 0), 1);
    EXPECT_EQ(out, 0.0);
    EXPECT_EQ(__DoEncodeDate(2006, 0, 5, &out, 0), 0);
    EXPECT_EQ(__DoEncodeDate(2004, 2, 29, &out, 0), 1);
    // Extra days are added to the sum, so no month is renormalised.
    EXPECT_EQ(__DoEncodeDate(2006, 11, 23, &out, 38), 1);
    EXPECT_EQ(out, __EncodeDate(2006, 12, 31));
    // A wrapped day number decodes back to its date.
    uint32_t y, m, d;
    __DecodeDate(4294967295.0, &y, &m, &d);
    EXPECT_EQ(std::vector<uint32_t>({y, m, d}), std::vector<uint32_t>({1899, 12, 29}));
    __DecodeDate(0.0, &y, &m, &d);
    EXPECT_EQ(std::vector<uint32_t>({y, m, d}), std::vector<uint32_t>({0, 0, 0}));
    TimeStamp stamp;
    EXPECT_EQ(__DateTimeToTimeStamp(&stamp, 2.5), &stamp);
    EXPECT_EQ(stamp.date, 693596.0);
    EXPECT_EQ(stamp.time, (2.5 - 693596.0) * 86400000.0);
}

TEST_F(Dates, TwoDigitYearsFallInTheEpochWindowWhichNeverStartsBefore1900) {
    setting(kEpoch, num(1950));
    EXPECT_EQ(__EncodeDate(49, 1, 1), __EncodeDate(2049, 1, 1));
    EXPECT_EQ(__EncodeDate(50, 1, 1), __EncodeDate(1950, 1, 1));
    setting(kEpoch, num(1800));
    EXPECT_EQ(__EncodeDate(5, 1, 1), __EncodeDate(1905, 1, 1));
    EXPECT_EQ(number(__Set(num(kEpoch), nullptr)), 1900.0); // raised for good
    __SetEpoch(num(2000));                                   // does nothing
    EXPECT_EQ(number(__Set(num(kEpoch), nullptr)), 1900.0);
}

TEST_F(Dates, PartsAndNamesOfADate) {
    struct Case {
        pObj d;
        double dow;
        const char *cdow, *cmonth;
        double day, month, year, julian;
    };
    std::vector<Case> cases = {
        {date(2006, 11, 23), 5, "thursday", "november", 23, 11, 2006, 3232006},
        {date(2006, 10, 1), 1, "sunday", "octuber", 1, 10, 2006, 2802006},
        {date(2006, 1, 31), 3, "tuesday", "january", 31, 1, 2006, 312006},
        {date(2004, 2, 29), 1, "sunday", "february", 29, 2, 2004, 582004},
        // The wrapped day number of 29 December 1899 gives its weekday from the wrapped count.
        {date(1899, 12, 29), 3, "tuesday", "december", 29, 12, 1899, 3701899},
        {emptyDate(), 7, "saturday", "", 0, 0, 0, 0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.cdow);
        EXPECT_EQ(number(__Dow(c.d)), c.dow);
        EXPECT_EQ(str(__CDow(c.d)), c.cdow);
        EXPECT_EQ(str(__CMonth(c.d)), c.cmonth);
        EXPECT_EQ(number(__Day(c.d)), c.day);
        EXPECT_EQ(number(__Month(c.d)), c.month);
        EXPECT_EQ(number(__Year(c.d)), c.year);
        EXPECT_EQ(number(__JulianDate(c.d)), c.julian);
    }
    // __Dow never raises: anything but a date is 0.
    EXPECT_EQ(number(__Dow(nullptr)), 0);
    EXPECT_EQ(number(__Dow(text("x"))), 0);
}

TEST_F(Dates, TextToDateUnderTheSettingAndUnderAFormat) {
    setting(kEpoch, num(1950));
    struct Case {
        const char *input, *format;
        double expected; // -1: no value
    };
    const double dec31 = __EncodeDate(2006, 12, 31);
    std::vector<Case> cases = {
        {"12/31/06", nullptr, dec31},
        {"12/31/49", nullptr, __EncodeDate(2049, 12, 31)},
        {"1/2/06", nullptr, 0},          // under 8 characters
        {"02/30/06", nullptr, -1},       // impossible: no value at all
        {"13/01/06", nullptr, 0},        // month out of range
        {"12/32/06", nullptr, 0},        // day out of range
        {"00/00/06", nullptr, 0},
        {"31/12/2006", "dd/mm/yyyy", dec31},
        {"31/02/2006", "dd/mm/yyyy", -1},
        {"2006-12-31", "yyyy-mm-dd", dec31},
        {" 1/ 2/2006", "dd/mm/yyyy", __EncodeDate(2006, 2, 1)}, // blanks before digits
        {"31/12/06", "DD/MM/YY", dec31},                         // letters of either case
        {"31/12/xx", "dd/mm", __EncodeDate(2000, 12, 31)},       // no year field: year 0
        {"31/12/99999", "dd/mm/yyyyy", -1},                      // beyond 9999
        {"31/-1/2006", "dd/mm/yyyy", 0},
        {"31/12/-006", "dd/mm/yyyy", -1},                        // a negative year is refused
    };
    for (const Case &c : cases) {
        pObj result = __Ctod(text(c.input), c.format ? text(c.format) : nullptr);
        if (c.expected < 0) {
            EXPECT_EQ(result, nullptr) << c.input;
            continue;
        }
        ASSERT_NE(result, nullptr) << c.input;
        EXPECT_EQ(result->type, TYPE_DATE) << c.input;
        EXPECT_EQ(result->payload.d, c.expected) << c.input;
    }
}

TEST_F(Dates, ValidityTestsRangesOnlyAndAcceptsAnEmptyText) {
    struct Case {
        const char *input, *format;
        int valid;
    };
    std::vector<Case> cases = {
        {"", "dd/mm/yy", 1},           {"00/00/00", "dd/mm/yy", 1},
        {"31/02/2006", "dd/mm/yyyy", 1}, // month lengths are not looked at
        {"05/01/6", "dd/mm/yy", 1},     // no minimum length
        {"32/01/06", "dd/mm/yy", 0},   {"01/13/06", "dd/mm/yy", 0},
        {"05/00/00", "dd/mm/yy", 0},   {"00/05/06", "dd/mm/yy", 0},
        {"\xE9\xE9/01/06", "dd/mm/yy", 0},
    };
    for (const Case &c : cases)
        EXPECT_EQ(__IsValidDate(text(c.input), text(c.format)), c.valid) << c.input;
}

TEST_F(Dates, DateToTextFollowsTheFieldsOfTheFormat) {
    pObj nov23 = date(2006, 11, 23);
    struct Case {
        pObj d;
        const char *format, *expected;
    };
    std::vector<Case> cases = {
        {nov23, "dd/mm/yyyy", "23/11/2006"},
        {nov23, "yyyy.mm.dd", "2006.11.23"},
        {nov23, "ddmmyyyy", "23112006"},     // no separator: fields run together
        {nov23, "dd/mm", "23/11"},           // a missing field prints nothing
        {nov23, "dd/mm/yyy", "23/11/006"},   // under four letters the year loses its century
        {nov23, "d/m/y", "23/11/6"},
        {date(2006, 1, 2), "dd-mm-yy", "02-01-06"},
        {date(1899, 12, 29), "dd/mm/yyyy", "29/12/1899"},
        {emptyDate(), "dd/mm/yyyy", "  /  /    "},
        {emptyDate(), "mm/dd/yy", "  /  /  "},
        {nov23, "dd\xE9mm\xE9yy", "23\xE9" "11\xE9" "06"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(str(__Dtoc(c.d, text(c.format))), c.expected) << c.format;
    EXPECT_EQ(str(__Dtos(nov23)), "20061123");
    EXPECT_EQ(str(__Dtos(date(33, 1, 2))), "20330102"); // epoch 1940 at start-up: 1933 is below it
    EXPECT_EQ(str(__Dtos(emptyDate())), "00000000");
}

TEST_F(Dates, TheDateFormatSettingRulesWhereNoFormatIsGiven) {
    pObj nov23 = date(2006, 11, 23);
    EXPECT_EQ(str(__Dtoc(nov23, nullptr)), "11/23/06");
    __SetCentury(__INIT_BOOL(1));
    EXPECT_EQ(str(__Dtoc(nov23, nullptr)), "11/23/2006");
    __Set_DateFormat(text("dd.mm.yyyy"));
    EXPECT_EQ(str(__Dtoc(nov23, nullptr)), "23.11.2006");
    EXPECT_EQ(number(__Ctod(text("23.11.2006"), nullptr)), 39044.0);
    __Set_DateFormat(nullptr); // changes nothing
    EXPECT_EQ(str(__Set(num(kDateFormat), nullptr)), "dd.mm.yyyy");
    __SetCentury(__INIT_BOOL(0)); // the century overwrites any format
    EXPECT_EQ(str(__Dtoc(nov23, nullptr)), "11/23/06");
}

TEST_F(Dates, ElapsedTimeIsNotFoldedOverMidnight) {
    struct Case {
        const char *start, *end, *expected;
    };
    std::vector<Case> cases = {
        {"10:00:00", "11:30:15", "01:30:15"},
        {"10:00:00", "09:59:59", "1193046:28:15"},
        {"00:00:00", "23:59:59", "23:59:59"},
        {"10.00.00", "10-00-01", "00:00:01"}, // any separators
        {"", "00:01", "00:01:00"},             // short texts: missing parts are 0
    };
    for (const Case &c : cases)
        EXPECT_EQ(str(__ElapTime(text(c.start), text(c.end))), c.expected) << c.start << " " << c.end;
}

// Runs f until the clock reads the same second before and after it, so that a result
// can be compared with the clock.
template <class F>
std::pair<zq::platform::LocalTime, std::string> atOneSecond(F f) {
    for (;;) {
        zq::platform::LocalTime before = zq::platform::localTime();
        std::string result = f();
        zq::platform::LocalTime after = zq::platform::localTime();
        if (before.second == after.second && before.minute == after.minute && before.day == after.day)
            return {before, result};
    }
}

TEST_F(Dates, ClockBuiltInsReadTheLocalClock) {
    auto [now, time] = atOneSecond([] { return str(__Time()); });
    char expected[32];
    std::snprintf(expected, sizeof expected, "%02d:%02d:%02d", now.hour, now.minute, now.second);
    EXPECT_EQ(time, expected);
    auto [now2, seconds] = atOneSecond([] { return str(__Seconds()); });
    std::snprintf(expected, sizeof expected, "%02d:%02d:%02d", now2.hour, now2.minute, now2.second);
    EXPECT_EQ(seconds, expected); // the time of day, not a count of seconds
    auto [now3, today] = atOneSecond([] { return std::to_string(number(__Date())); });
    EXPECT_EQ(today, std::to_string(__EncodeDate(now3.year, now3.month, now3.day)));
}

TEST_F(Dates, TimeStampsJoinTheYearAndAnOddMinuteCount) {
    for (uint32_t year : {2006u, 2030u, 1999u}) {
        auto [now, stamp] = atOneSecond([year] { return str(__GenTMS(date(year, 3, 4))); });
        long long v = (534240LL + now.minute + now.hour) * 60 + now.second;
        char joined[64], expected[32];
        std::snprintf(joined, sizeof joined, "%d%lld", int(year) - 2000, v);
        std::snprintf(expected, sizeof expected, "%x", unsigned(std::strtoll(joined, nullptr, 10)));
        EXPECT_EQ(stamp, expected) << year;
    }
}

} // namespace
