// __Stuff: the first `start` bytes of a text, then the inserted text, then the text from
// start + delete count on.
#include "library/arguments.h"
#include "zelqa/strings.h"

#include <algorithm>
#include <cstring>

using namespace zq::library;
using zq::runtime::TemporaryShield;

pObj __Stuff(pObj text, pObj start, pObj remove, pObj insert) noexcept {
    std::string_view s = bufferOf(requireText(text));
    double at = requireNumber(start);
    double count = requireNumber(remove);
    std::string_view ins = textOf(requireText(insert));
    const double whole = text->objLength; // L: length + 1
    if (at >= whole || count >= whole)
        return nullptr; // a start or delete count beyond the text gives no value
    // Negative places count as 0. The kept head is `start` bytes long, not start - 1.
    size_t head = std::min(static_cast<size_t>(std::max(truncated(at), 0)), s.size());
    size_t tail = std::min(head + static_cast<size_t>(std::max(truncated(count), 0)), s.size());
    TemporaryShield keepText(text), keepInsert(insert);
    pObj result = newText(static_cast<int64_t>(head + ins.size() + (s.size() - tail)));
    char *out = result->payload.c;
    std::memcpy(out, s.data(), head);
    std::memcpy(out + head, ins.data(), ins.size());
    std::memcpy(out + head + ins.size(), s.data() + tail, s.size() - tail);
    return result;
}
