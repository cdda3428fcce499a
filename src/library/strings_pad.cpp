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

namespace {

// What every pad reads: the text's buffer, the width and the fill (one space when an
// optional fill is absent).
struct Padding {
    std::string_view text, fill;
    double width;
};

Padding padding(pObj text, pObj width, pObj fill, bool optionalFill) {
    Padding p{bufferOf(requireText(text)), std::string_view(" "), requireNumber(width)};
    if (fill || !optionalFill)
        p.fill = bufferOf(requireText(fill));
    return p;
}

bool wideEnough(const Padding &p, double width) { return static_cast<double>(p.text.size()) >= width; }

} // namespace

pObj __PadR(pObj text, pObj width, pObj fill) noexcept {
    Padding p = padding(text, width, fill, true);
    int32_t n = truncated(p.width);
    if (wideEnough(p, n))
        return text;
    TemporaryShield keepText(text), keepFill(fill);
    // An empty fill pads nothing; whole copies of a longer one would run past the width,
    // so the result stops there.
    size_t total = p.fill.empty() ? p.text.size() : static_cast<size_t>(n);
    pObj result = newText(static_cast<int64_t>(total));
    std::memcpy(result->payload.c, p.text.data(), p.text.size());
    if (!p.fill.empty())
        fillWithCopies(result->payload.c + p.text.size(), p.fill, total - p.text.size());
    return result;
}

pObj __Pad(pObj text, pObj width, pObj fill) noexcept { return __PadR(text, width, fill); }

pObj __PadL(pObj text, pObj width, pObj fill) noexcept {
    Padding p = padding(text, width, fill, false);
    if (wideEnough(p, p.width))
        return text;
    // Whole copies of the fill, one for each missing byte, then the text.
    int64_t copies = int64_t{truncated(p.width)} - static_cast<int64_t>(p.text.size());
    TemporaryShield keepText(text), keepFill(fill);
    pObj result = newText(copies * static_cast<int64_t>(p.fill.size()) + static_cast<int64_t>(p.text.size()));
    auto filled = static_cast<size_t>(copies) * p.fill.size();
    if (filled)
        fillWithCopies(result->payload.c, p.fill, filled);
    std::memcpy(result->payload.c + filled, p.text.data(), p.text.size());
    return result;
}

pObj __PadC(pObj text, pObj width, pObj fill) noexcept {
    Padding p = padding(text, width, fill, false);
    if (wideEnough(p, p.width))
        return text;
    // One copy of the fill at k, whatever the shortfall; a text shorter than k is
    // followed by the fill.
    size_t k = std::min(static_cast<size_t>(std::max(truncated(p.width - 1) / 2, 0)), p.text.size());
    TemporaryShield keepText(text), keepFill(fill);
    pObj result = newText(static_cast<int64_t>(p.text.size() + p.fill.size()));
    char *out = result->payload.c;
    std::memcpy(out, p.text.data(), k);
    std::memcpy(out + k, p.fill.data(), p.fill.size());
    std::memcpy(out + k + p.fill.size(), p.text.data() + k, p.text.size() - k);
    return result;
}
