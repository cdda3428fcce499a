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

// Fills `room` bytes at out with copies of a non-empty fill, the last one cut to fit.
void fillRepeated(char *out, std::string_view fill, size_t room) {
    for (size_t written = 0; written < room;) {
        size_t n = std::min(fill.size(), room - written);
        std::memcpy(out + written, fill.data(), n);
        written += n;
    }
}

} // namespace

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
    fillRepeated(result->payload.c + s.size(), with, total - s.size());
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
    char *out = result->payload.c;
    for (int64_t i = 0; i < copies; ++i, out += with.size())
        std::memcpy(out, with.data(), with.size());
    std::memcpy(out, s.data(), s.size());
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
