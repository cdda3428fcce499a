// Date arithmetic: a date plus or minus a number of days, and the days between two dates.
//
// Adding re-encodes the date's own year, month and day with the days as an extra count,
// so no month or year has to be renormalised.
#include "runtime/raise.h"
#include "zelqa/dates.h"
#include "zelqa/operators.h"
#include "zelqa/values.h"

#include <cmath>
#include <cstdint>
#include <cstring>

using namespace zq::runtime;

pObj __AddTod(pObj date, pObj days) noexcept {
    requireArgument(date && date->type == TYPE_DATE && days && days->type == TYPE_NUMERIC);
    double count = std::trunc(days->payload.d);
    // A count beyond 32 bits (or NaN) can name no date.
    requireArgument(count >= INT32_MIN && count <= INT32_MAX);
    uint32_t y = 0, m = 0, d = 0;
    __DecodeDate(date->payload.d, &y, &m, &d);
    double result = 0.0;
    // The empty date decodes to month 0, which encodes as 0 and so is refused here.
    if (!__DoEncodeDate(y, m, d, &result, static_cast<int32_t>(count)) || !(result > 0.0))
        raiseError(ZQ_ERR_ARGUMENT);
    return __INIT_DATE(result);
}

pObj __SubTod(pObj a, pObj b) noexcept {
    requireArgument(a && b);
    if (b->type != TYPE_DATE)
        return __AddTod(a, __INV(b));
    // The left operand's type is not looked at: its payload is taken as a day number.
    double left = 0.0;
    std::memcpy(&left, &a->payload, sizeof left);
    return __INIT_DOUBLE(left - b->payload.d);
}
