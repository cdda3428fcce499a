// Picture functions: __GetMaskType names a picture's function, __PictureSize counts the
// input places of the picture of a user-interface object.
#include "library/arguments.h"
#include "library/picture.h"
#include "zelqa/numbers.h"
#include "zelqa/values.h"

#include <cstring>
#include <string_view>

namespace zq::library {

namespace {
PictureLookup pictureLookup = nullptr;
} // namespace

void setPictureLookup(PictureLookup lookup) { pictureLookup = lookup; }

} // namespace zq::library

using namespace zq::library;

int __GetMaskType(const char *picture) noexcept {
    if (!picture || picture[0] != '@')
        return kMaskNone;
    switch (picture[1]) {
    case '!': return kMaskUpper;
    case 'R': return kMaskTemplate;
    case 'E': return kMaskEuropean;
    case 'D': return kMaskDate;
    default: return kMaskNone;
    }
}

pObj __PictureSize(pObj object) noexcept {
    int32_t number = truncated(requireNumber(object));
    const char *picture = pictureLookup ? pictureLookup(number) : nullptr;
    if (!picture)
        return __INIT_NIL(); // no such object, or one without a picture
    int mask = __GetMaskType(picture);
    if (mask != kMaskTemplate && mask != kMaskEuropean)
        return __INIT_DOUBLE(0);
    // The input places are counted from the end back to the function or a blank.
    int count = 0;
    for (size_t i = std::strlen(picture); i > 0 && picture[i - 1] != ' ' && picture[i - 1] != '@'; --i)
        count += std::string_view("!9AX").find(picture[i - 1]) != std::string_view::npos;
    return __INIT_DOUBLE(count);
}
