// Latin-1 and UTF-8 conversions and the small text helpers of the tool.
#include "text.h"

#include <cctype>

namespace zq::tool {

std::string latin1ToUtf8(std::string_view latin1) {
    std::string out;
    out.reserve(latin1.size());
    for (unsigned char c : latin1) {
        if (c < 0x80) {
            out += char(c);
            continue;
        }
        out += char(0xC0 | (c >> 6));
        out += char(0x80 | (c & 0x3F));
    }
    return out;
}

bool utf8ToLatin1(std::string_view utf8, std::string &latin1) {
    latin1.clear();
    for (size_t i = 0; i < utf8.size(); ++i) {
        unsigned char c = utf8[i];
        if (c < 0x80) {
            latin1 += char(c);
            continue;
        }
        // Two-byte sequences C2..C3 cover U+0080..U+00FF; anything else has no Latin-1 byte.
        if ((c != 0xC2 && c != 0xC3) || i + 1 >= utf8.size())
            return false;
        unsigned char next = utf8[++i];
        if ((next & 0xC0) != 0x80)
            return false;
        latin1 += char(((c & 0x03) << 6) | (next & 0x3F));
    }
    return true;
}

std::string upper(std::string_view text) {
    std::string out(text);
    for (char &c : out)
        c = char(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

std::string trim(std::string_view text) {
    size_t b = text.find_first_not_of(" \t\r\n");
    if (b == std::string_view::npos)
        return "";
    size_t e = text.find_last_not_of(" \t\r\n");
    return std::string(text.substr(b, e - b + 1));
}

bool sameCaseless(std::string_view a, std::string_view b) { return upper(a) == upper(b); }

} // namespace zq::tool
