// Case: __Upper and __Lower change the ASCII letters only; other bytes, those above 127
// included, are copied as they are.
#include "library/arguments.h"
#include "library/char_classes.h"
#include "zelqa/strings.h"

using namespace zq::library;
using zq::runtime::TemporaryShield;

namespace {

// A copy of the whole buffer with the bytes of class `from` moved by `shift`.
pObj convertCase(pObj text, uint8_t from, int shift) {
    if (!text)
        return nullptr; // an absent argument gives no value, and no error
    std::string_view bytes = bufferOf(requireText(text));
    TemporaryShield keep(text);
    pObj result = newText(static_cast<int64_t>(bytes.size()));
    char *out = result->payload.c;
    for (char byte : bytes) {
        auto c = static_cast<unsigned char>(byte);
        *out++ = static_cast<char>(charClass(c) & from ? c + shift : c);
    }
    return result;
}

} // namespace

pObj __Upper(pObj text) noexcept { return convertCase(text, kLower, -32); }

pObj __Lower(pObj text) noexcept { return convertCase(text, kUpper, 32); }
