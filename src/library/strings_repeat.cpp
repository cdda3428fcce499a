// Repetition: __Replicate (a fractional count rounds up) and __Space.
//
#include "library/arguments.h"
#include "zelqa/errors.h"
#include "zelqa/strings.h"

#include <cmath>
#include <cstring>

using namespace zq::library;
using zq::runtime::TemporaryShield;

pObj __Replicate(pObj text, pObj count) noexcept {
    std::string_view s = textOf(requireText(text));
    double n = requireNumber(count);
    if (!(n > 0) || s.empty())
        return newText(0);
    // Copies are added while fewer than n are there: 2.5 makes 3.
    double copies = std::ceil(n);
    if (copies * static_cast<double>(s.size()) > INT32_MAX)
        zq::runtime::raiseError(ZQ_ERR_LOW_MEMORY);
    auto total = static_cast<int64_t>(copies) * static_cast<int64_t>(s.size());
    TemporaryShield keep(text);
    pObj result = newText(total);
    fillWithCopies(result->payload.c, s, static_cast<size_t>(total));
    return result;
}

pObj __Space(pObj count) noexcept {
    // A negative count asks the allocation for a negative size: "LOW MEMORY!".
    pObj result = newText(truncated(requireNumber(count)));
    std::memset(result->payload.c, ' ', static_cast<size_t>(result->objLength - 1));
    return result;
}
