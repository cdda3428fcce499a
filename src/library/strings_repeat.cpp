// Repetition: __Replicate (a fractional count rounds up) and __Space.
//
// The copies are made by doubling what is already written, so the time is linear in the
// result's length.
#include "library/arguments.h"
#include "zelqa/errors.h"
#include "zelqa/strings.h"

#include <algorithm>
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
    char *out = result->payload.c;
    std::memcpy(out, s.data(), s.size());
    for (int64_t done = static_cast<int64_t>(s.size()); done < total;) {
        int64_t n = std::min(done, total - done);
        std::memcpy(out + done, out, static_cast<size_t>(n));
        done += n;
    }
    return result;
}

pObj __Space(pObj count) noexcept {
    // A negative count asks the allocation for a negative size: "LOW MEMORY!".
    pObj result = newText(truncated(requireNumber(count)));
    std::memset(result->payload.c, ' ', static_cast<size_t>(result->objLength - 1));
    return result;
}
