// Character codes: __Asc of a text's first byte and __Chr of a number's low byte.
#include "library/arguments.h"
#include "zelqa/strings.h"
#include "zelqa/values.h"

#include <cmath>

using namespace zq::library;

pObj __Asc(pObj text) noexcept {
    std::string_view s = textOf(requireText(text));
    return __INIT_DOUBLE(s.empty() ? 0 : static_cast<unsigned char>(s[0]));
}

pObj __Chr(pObj code) noexcept {
    double n = std::trunc(requireNumber(code));
    double low = std::isfinite(n) ? std::fmod(n, 256.0) : 0.0;
    if (low < 0)
        low += 256.0;
    // Code 0 makes a one-byte buffer holding NUL: an empty text with length field 2.
    pObj result = newText(1);
    result->payload.c[0] = static_cast<char>(static_cast<unsigned char>(low));
    return result;
}
