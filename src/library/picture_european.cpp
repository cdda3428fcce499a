// The "@E" picture: a number laid right-aligned into a template of '9' places, with the
// European swap of ',' and the decimal character.
//
// The number's text is made in the runtime context's scratch buffer, and whatever would
// run past its end is cut there.
#include "library/char_classes.h"
#include "library/number_text.h"
#include "library/picture.h"
#include "runtime/context.h"

#include <algorithm>
#include <cmath>

namespace zq::library {

namespace {

// The number text in the scratch buffer.
class ScratchText {
public:
    ScratchText() : buf_(runtime::context().scratch) { buf_[0] = '\0'; }
    void push(char c) {
        if (n_ < kRoom)
            buf_[n_++] = c;
        buf_[n_] = '\0';
    }
    void append(std::string_view s) {
        for (char c : s)
            push(c);
    }
    void resize(size_t n) {
        n_ = std::min(n, n_);
        buf_[n_] = '\0';
    }
    std::string_view view() const { return {buf_, n_}; }

private:
    static constexpr size_t kRoom = runtime::kScratchSize - 1;
    char *buf_;
    size_t n_ = 0;
};

bool isDigit(char c) { return charClass(static_cast<unsigned char>(c)) & kDigit; }

// The picture's decimals: the '9' places behind its first '.'.
size_t templateDecimals(std::string_view templ) {
    size_t point = templ.find('.');
    return point == std::string_view::npos ? 0 : static_cast<size_t>(std::count(templ.begin() + point, templ.end(), '9'));
}

// Brings the number text to the picture's decimals: zeros added behind them, or the text
// cut at its decimal character when the picture has none. A text without the decimal
// character is a whole number; one with more decimals than the picture loses the rest.
void matchDecimals(ScratchText &number, size_t decimals, char dc) {
    size_t point = number.view().find(dc);
    if (decimals == 0) {
        if (point != std::string_view::npos)
            number.resize(point);
        return;
    }
    if (point == std::string_view::npos) {
        point = number.view().size();
        number.push(dc);
    }
    size_t has = number.view().size() - point - 1;
    if (has > decimals)
        number.resize(point + 1 + decimals);
    for (; has < decimals; ++has)
        number.push('0');
}

// Lays the number text into the template from the right, then places the sign and trims.
std::string fill(std::string_view templ, std::string_view number, bool negative, char dc) {
    std::string out(templ.size(), ' ');
    for (size_t t = templ.size(), n = number.size(); t > 0 && n > 0; --t) {
        char c = number[n - 1];
        bool separator = c == ',' || c == '.';
        switch (templ[t - 1]) {
        case ',':
            out[t - 1] = dc == ',' ? '.' : ',';
            n -= separator;
            break;
        case '.':
            out[t - 1] = dc;
            n -= separator;
            break;
        case '9':
            if (isDigit(c)) {
                out[t - 1] = c;
                --n;
            }
            break;
        default:
            break; // any other template byte leaves a blank
        }
    }
    if (negative) {
        size_t digits = out.find_first_not_of(' ');
        if (digits == 0)
            out.insert(out.begin(), '-');
        else
            out[(digits == std::string::npos ? out.size() : digits) - 1] = '-';
    }
    size_t first = out.find_first_not_of(' ');
    if (first == std::string::npos)
        return {};
    return out.substr(first, out.find_last_not_of(' ') - first + 1);
}

} // namespace

std::string europeanText(std::string_view templ, std::string_view value, char dc) {
    ScratchText number;
    for (char c : value)
        if (isDigit(c) || c == dc)
            number.push(c);
    matchDecimals(number, templateDecimals(templ), dc);
    return fill(templ, number.view(), value.find('-') != std::string_view::npos, dc);
}

std::string europeanNumber(std::string_view templ, double value, char dc) {
    // A blank behind the picture's '.' ends the picture there.
    if (size_t point = templ.find('.'); point != std::string_view::npos)
        templ = templ.substr(0, templ.find(' ', point));
    size_t decimals = templateDecimals(templ);
    ScratchText number;
    number.append(formatDecimal(std::fabs(value), static_cast<int32_t>(std::min<size_t>(decimals, kMaxDecimals)), true, dc));
    matchDecimals(number, decimals, dc);
    return fill(templ, number.view(), value < 0, dc);
}

} // namespace zq::library
