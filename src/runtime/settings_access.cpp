// The language's access to the settings slots: __Set and __SetCentury.
//
// Setting 4 is the date format and setting 12 the century; the two are kept in step:
// storing the century rewrites the date format, and a stored date format is adjusted to
// the century in force.
#include "runtime/arrays.h"
#include "runtime/context.h"
#include "runtime/raise.h"
#include "runtime/settings.h"
#include "zelqa/context.h"
#include "zelqa/values.h"

#include <string>

using namespace zq::runtime;

namespace {

constexpr int kDateFormat = 4;
constexpr int kCentury = 12;

bool centuryOn() {
    pObj century = context().settings[kCentury - 1];
    return century && century->type == TYPE_LOGICAL && century->payload.l;
}

// The date format as stored: brought to two year digits without the century and to four
// with it, in the ways compiled programs have always seen.
std::string adjustDateFormat(std::string format) {
    int years = 0;
    for (char c : format)
        years += c == 'y' || c == 'Y';
    if (!centuryOn()) {
        if (years != 2 && !format.empty() && (format[0] == 'y' || format[0] == 'Y'))
            format.erase(0, format.size() < 2 ? format.size() : 2);
        return format;
    }
    if (years == 4 || years == 0)
        return format;
    size_t first = format.find('y');
    if (first == std::string::npos)
        first = format.find('Y');
    if (format.size() - first - 1 >= 2)
        return "yy" + format;
    return format + "yy";
}

pObj storeDateFormat(pObj cFormat) {
    requireArgument(cFormat->type == TYPE_CHAR);
    std::string format = adjustDateFormat(cFormat->payload.c ? cFormat->payload.c : "");
    return storeSetting(kDateFormat, __INIT_CHARPTR(format.c_str()));
}

pObj storeCentury(pObj lOn) {
    requireArgument(lOn->type == TYPE_LOGICAL);
    pObj century = storeSetting(kCentury, lOn);
    storeSetting(kDateFormat, __INIT_CHARPTR(lOn->payload.l ? "mm/dd/yyyy" : "mm/dd/yy"));
    return century;
}

} // namespace

pObj __Set(pObj nSetting, pObj xValue) noexcept {
    int32_t n = 0;
    requireArgument(integerArgument(nSetting, n) && n >= 1 && n <= 12);
    if (xValue) {
        // Settings hold plain values: an array would become permanent and shared.
        requireArgument(xValue->type != TYPE_ARRAY);
        if (n == kDateFormat)
            storeDateFormat(xValue);
        else if (n == kCentury)
            storeCentury(xValue);
        else
            storeSetting(n, xValue);
    }
    pObj slot = context().settings[n - 1];
    return slot ? slot : sharedConstant(kNil);
}

pObj __SetCentury(pObj lOn) noexcept {
    if (lOn)
        storeCentury(lOn);
    pObj slot = context().settings[kCentury - 1];
    return slot ? slot : sharedConstant(kFalse);
}
