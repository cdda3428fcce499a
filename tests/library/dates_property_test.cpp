// Dates over their whole range: every day number from 31 December 1899 to 31 December
// 9999 decodes and encodes back to itself, and goes through text and back.
#include "library/library_support.h"

#include <gtest/gtest.h>

using namespace zq::library_test;

namespace {

class DatesEveryDay : public zq::test::FreshRuntime {};

TEST_F(DatesEveryDay, DecodingThenEncodingAndTextThenDateGiveTheDayBack) {
    const double last = __EncodeDate(9999, 12, 31);
    ASSERT_EQ(last, 2958465.0);
    pObj format = __SET_OBJECT(nullptr, text("dd/mm/yyyy")); // a variable: it outlives the ring
    int failures = 0;
    uint32_t previousDay = 30; // day 0 is 30 December 1899
    for (double day = 1; day <= last && failures < 10; ++day) {
        uint32_t y, m, d;
        __DecodeDate(day, &y, &m, &d);
        // Each day is the one after the previous: day 1 of a month follows a month's end.
        bool follows = d == previousDay + 1 || (d == 1 && previousDay >= 28);
        previousDay = d;
        double encoded = __EncodeDate(y, m, d);
        pObj back = __Ctod(__Dtoc(__INIT_DATE(day), format), format);
        if (encoded != day || !follows || !back || back->payload.d != day) {
            ADD_FAILURE() << "day " << day << " is " << y << "-" << m << "-" << d;
            ++failures;
        }
    }
}

} // namespace
