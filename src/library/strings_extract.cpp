// Extraction: __Left, __Right and __SubStr.
//
// __SubStr measures with objLength (length + 1): a stretch that reaches the end copies
// the NUL too, and its length field counts it.
#include "library/arguments.h"
#include "zelqa/strings.h"

#include <algorithm>
#include <cmath>

using namespace zq::library;
using zq::runtime::TemporaryShield;

namespace {

pObj partOf(pObj text, std::string_view part) {
    TemporaryShield keep(text);
    return freshText(part);
}

} // namespace

pObj __Left(pObj text, pObj count) noexcept {
    std::string_view s = textOf(requireText(text));
    double n = requireNumber(count);
    if (!(n > 0))
        return text; // no count: the value itself
    // 0 < n < 1 takes no byte.
    size_t k = std::min(static_cast<size_t>(truncated(n)), s.size());
    return partOf(text, s.substr(0, k));
}

pObj __Right(pObj text, pObj count) noexcept {
    std::string_view s = textOf(requireText(text));
    double n = requireNumber(count);
    if (!(n > 0))
        return text;
    size_t start = 0;
    if (static_cast<double>(s.size()) >= n)
        start = s.size() - static_cast<size_t>(truncated(n));
    return partOf(text, s.substr(start));
}

pObj __SubStr(pObj text, pObj start, pObj count) noexcept {
    requireText(text);
    double from = requireNumber(start);
    int32_t whole = std::max<int32_t>(text->objLength, 1);   // L: length + 1
    std::string_view bytes = bufferOf(text);                 // L - 1 bytes
    int32_t p = std::max(truncated(from), 1) - 1;            // a start below 1 is 1
    // A count that is not a number is taken as absent.
    int32_t n = isNumber(count) ? truncated(count->payload.d) : static_cast<int32_t>(textOf(text).size());
    if (p >= whole || n <= 0)
        return partOf(text, textOf(text)); // the whole text, not an empty one
    n = std::min(n, whole);
    if (n + p > whole)
        n = whole - p;
    TemporaryShield keep(text);
    pObj result = newText(n);
    // The last of the L bytes is the NUL, which the new buffer holds already.
    int32_t stored = std::min<int32_t>(n, static_cast<int32_t>(bytes.size()) - p);
    std::copy_n(bytes.data() + p, std::max(stored, 0), result->payload.c);
    return result;
}
