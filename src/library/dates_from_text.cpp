// Text to date: __Ctod and __IsValidDate, under a format or the date format setting.
//
// The two checks differ on purpose: __IsValidDate tests only the ranges of month and day,
// while __Ctod encodes the date and so refuses 31 February as well.
#include "library/arguments.h"
#include "library/date_fields.h"
#include "zelqa/dates.h"
#include "zelqa/values.h"

using namespace zq::library;

namespace {

struct DateParts {
    int32_t year, month, day;
};

DateParts readDate(std::string_view input, std::string_view format) {
    DateLayout layout = scanDateFormat(format);
    return {readDateField(input, layout.year), readDateField(input, layout.month),
            readDateField(input, layout.day)};
}

bool inRange(const DateParts &p) { return p.month >= 1 && p.month <= 12 && p.day >= 1 && p.day <= 31; }

} // namespace

pObj __Ctod(pObj text, pObj format) noexcept {
    requireText(text);
    std::string_view picture = format ? textOf(requireText(format)) : dateFormatSetting();
    std::string_view input = textOf(text);
    if (input.size() < 8)
        return __INIT_DATE(0.0);
    DateParts p = readDate(input, picture);
    if ((p.year == 0 && p.month == 0) || !inRange(p))
        return __INIT_DATE(0.0);
    double day = 0.0;
    // A negative year becomes a huge unsigned one, which the encoding refuses.
    if (!__DoEncodeDate(static_cast<uint32_t>(p.year), static_cast<uint32_t>(p.month),
                        static_cast<uint32_t>(p.day), &day, 0))
        return nullptr; // an impossible date: no value at all, callers must allow for it
    return __INIT_DATE(day);
}

int __IsValidDate(pObj text, pObj format) noexcept {
    std::string_view input = textOf(requireText(text));
    std::string_view picture = textOf(requireText(format));
    if (input.empty())
        return 1;
    DateParts p = readDate(input, picture);
    if (p.year == 0 && p.month == 0)
        return p.day == 0;
    return inRange(p);
}
