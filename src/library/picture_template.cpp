// The "@R" picture: a text value laid through a template of input places and literals.
//
// '!' takes a letter or blank (raised to upper case), '9' a digit, 'A' and 'X' any byte;
// a place whose byte does not fit ends the result there. Every other template byte is a
// literal, written out and consumed from the value when the value holds it there. The
// walk ends with the value, so literals behind its last byte are not written.
#include "library/char_classes.h"
#include "library/picture.h"

namespace zq::library {

std::string applyTemplate(std::string_view templ, std::string_view value) {
    std::string out;
    size_t v = 0;
    for (size_t t = 0; t < templ.size() && v < value.size(); ++t) {
        auto c = static_cast<unsigned char>(value[v]);
        switch (templ[t]) {
        case '!':
            if (!(charClass(c) & (kUpper | kLower)) && c != ' ')
                return out;
            out += static_cast<char>(charClass(c) & kLower ? c - 32 : c);
            ++v;
            break;
        case '9':
            ++v; // consumed even when it ends the result
            if (!(charClass(c) & kDigit))
                return out;
            out += static_cast<char>(c);
            break;
        case 'A':
        case 'X':
            out += static_cast<char>(c);
            ++v;
            break;
        default:
            out += templ[t];
            if (value[v] == templ[t])
                ++v;
        }
    }
    return out;
}

} // namespace zq::library
