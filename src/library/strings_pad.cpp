// Padding: __PadR (and __Pad), __PadL and __PadC never truncate: a text already as wide
// as the width is returned as the value itself.
//
// Lengths here are objLength - 1, the text's buffer; a width is truncated toward zero.
#include "library/arguments.h"
#include "zelqa/strings.h"

#include <algorithm>
#include <cmath>
#include <cstring>

using namespace zq::library;
using zq::runtime::TemporaryShield;

pObj __PadR(pObj text, pObj width, pObj fill) noexcept {
    std::string_view s = bufferOf(requireText(text));
    int32_t n = truncated(requireNumber(width));
    std::string_view with = fill ? bufferOf(requireText(fill)) : std::string_view(" ");
    if (static_cast<int64_t>(s.size()) >= n)
        return text;
    TemporaryShield keepText(text), keepFill(fill);
    // An empty fill pads nothing; whole copies of a longer one would run past the width,
    // so the result stops there.
    size_t total = with.empty() ? s.size() : static_cast<size_t>(n);
    pObj result = newText(static_cast<int64_t>(total));
    std::memcpy(result->payload.c, s.data(), s.size());
    if (!with.empty())
        fillWithCopies(result->payload.c + s.size(), with, total - s.size());
    return result;
}

pObj __Pad(pObj text, pObj width, pObj fill) noexcept { return __PadR(text, width, fill); }

pObj __PadL(pObj text, pObj width, pObj fill) noexcept {
    std::string_view s = bufferOf(requireText(text));
    double n = requireNumber(width);
    std::string_view with = bufferOf(requireText(fill));
    if (static_cast<double>(s.size()) >= n)
        return text;
    // Whole copies of the fill, one for each missing byte, then the text.
    int64_t copies = int64_t{truncated(n)} - static_cast<int64_t>(s.size());
    TemporaryShield keepText(text), keepFill(fill);
    pObj result = newText(copies * static_cast<int64_t>(with.size()) + static_cast<int64_t>(s.size()));
    auto filled = static_cast<size_t>(copies) * with.size();
    if (filled)
        fillWithCopies(result->payload.c, with, filled);
    std::memcpy(result->payload.c + filled, s.data(), s.size());
    return result;
}

pObj __PadC(pObj text, pObj width, pObj fill) noexcept {
    std::string_view s = bufferOf(requireText(text));
    double n = requireNumber(width);
    std::string_view with = bufferOf(requireText(fill));
    if (static_cast<double>(s.size()) >= n)
        return text;
    // One copy of the fill at k, whatever the shortfall; a text shorter than k is
    // followed by the fill.
    size_t k = std::min(static_cast<size_t>(std::max(truncated(n - 1) / 2, 0)), s.size());
    TemporaryShield keepText(text), keepFill(fill);
    pObj result = newText(static_cast<int64_t>(s.size() + with.size()));
    char *out = result->payload.c;
    std::memcpy(out, s.data(), k);
    std::memcpy(out + k, with.data(), with.size());
    std::memcpy(out + k + with.size(), s.data() + k, s.size() - k);
    return result;
}
