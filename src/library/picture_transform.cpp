// __Transform: a value formatted through a picture of one of the four functions "@!",
// "@R", "@E" and "@D".
//
// A picture without one of them hands the value back unchanged; an empty value gives an
// empty text. Every text made through a template passes the finishing step: ",," pairs
// and a leading ',' removed, a '0' put before a leading '.'.
#include "library/arguments.h"
#include "library/decimal_character.h"
#include "library/picture.h"
#include "library/value_tests.h"
#include "zelqa/dates.h"
#include "zelqa/numbers.h"
#include "zelqa/strings.h"
#include "zelqa/values.h"

using namespace zq::library;
using zq::runtime::TemporaryShield;

namespace {

// Each run of commas keeps one comma when its length is odd and none when it is even,
// as deleting ",," pairs until none is left does.
std::string finish(std::string_view text) {
    std::string out;
    for (size_t i = 0; i < text.size();) {
        size_t run = 0;
        while (i + run < text.size() && text[i + run] == ',')
            ++run;
        if (run) {
            if (run % 2)
                out += ',';
            i += run;
            continue;
        }
        out += text[i++];
    }
    if (!out.empty() && out[0] == ',')
        out.erase(0, 1);
    if (!out.empty() && out[0] == '.')
        out.insert(out.begin(), '0');
    return out;
}

// A finished text as a fresh value; one too long to hold gives NIL.
pObj finished(std::string_view text) {
    std::string out = finish(text);
    if (out.size() >= INT16_MAX)
        return __INIT_NIL();
    return freshText(out);
}

// The template: the picture behind its function and the blanks after it.
std::string_view templateOf(std::string_view picture) {
    if (!picture.empty() && picture[0] == '@')
        picture.remove_prefix(std::min<size_t>(2, picture.size()));
    size_t first = picture.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view() : picture.substr(first);
}

pObj textThrough(pObj v, int mask, std::string_view templ) {
    switch (mask) {
    case kMaskDate: {
        pObj day = __Ctod(v, nullptr);
        // An impossible date has no value: it prints as the empty date does.
        return __Dtoc(day ? day : __INIT_DATE(0.0), nullptr);
    }
    case kMaskUpper:
        return __Upper(v);
    case kMaskTemplate:
        return finished(applyTemplate(templ, textOf(v)));
    default:
        return finished(europeanText(templ, textOf(v), localeDecimalCharacter()));
    }
}

} // namespace

pObj __Transform(pObj v, pObj picture) noexcept {
    if (!v)
        return __INIT_NIL();
    if (isEmptyValue(v))
        return newText(0);
    std::string pic(textOf(requireText(picture)));
    int mask = __GetMaskType(pic.c_str());
    if (pic.empty() || mask == kMaskNone)
        return v;
    std::string_view templ = templateOf(pic);
    TemporaryShield keepValue(v);
    switch (v->type) {
    case TYPE_CHAR:
        return textThrough(v, mask, templ);
    case TYPE_NUMERIC:
        if (mask == kMaskEuropean)
            return finished(europeanNumber(templ, v->payload.d, localeDecimalCharacter()));
        return finished(std::string(3 * templ.size(), ' '));
    case TYPE_DATE:
        return mask == kMaskDate ? __Dtoc(v, nullptr) : newText(0);
    default:
        return newText(0); // logicals and arrays
    }
}
