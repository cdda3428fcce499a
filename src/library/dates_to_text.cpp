// Date to text: __Dtoc under a format or the date format setting, and __Dtos.
#include "library/arguments.h"
#include "library/date_fields.h"
#include "zelqa/dates.h"
#include "zelqa/values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string>

using namespace zq::library;

namespace {

struct PrintedField {
    DateField field;
    uint32_t value;
};

// A field of the given width: the number with leading zeros (wider numbers keep their
// digits), or blanks for the empty date.
void appendField(std::string &out, const PrintedField &f, bool blank) {
    auto width = static_cast<size_t>(f.field.count);
    if (blank) {
        out.append(width, ' ');
        return;
    }
    std::string digits = std::to_string(f.value);
    if (digits.size() < width)
        out.append(width - digits.size(), '0');
    out += digits;
}

// The fields present, in the order of their first positions, joined by the separator.
std::string printDate(double dayNumber, std::string_view format) {
    DateLayout layout = scanDateFormat(format);
    uint32_t y = 0, m = 0, d = 0;
    __DecodeDate(dayNumber, &y, &m, &d);
    if (layout.year.count < 4)
        y = static_cast<uint32_t>(y - 100 * std::floor(y * 0.01));
    std::array<PrintedField, 3> fields{{{layout.day, d}, {layout.month, m}, {layout.year, y}}};
    std::stable_sort(fields.begin(), fields.end(), [](const PrintedField &a, const PrintedField &b) {
        return a.field.position < b.field.position;
    });
    std::string out;
    bool first = true;
    for (const PrintedField &f : fields) {
        if (f.field.count == 0)
            continue; // a letter the format lacks prints nothing
        if (!first && layout.separator >= 0)
            out += static_cast<char>(layout.separator);
        appendField(out, f, dayNumber == 0.0);
        first = false;
    }
    return out;
}

} // namespace

pObj __Dtoc(pObj date, pObj format) noexcept {
    double day = requireDate(date);
    std::string_view picture = format ? textOf(requireText(format)) : dateFormatSetting();
    std::string text = printDate(day, picture);
    return freshText(text);
}

pObj __Dtos(pObj date) noexcept {
    uint32_t y = 0, m = 0, d = 0;
    __DecodeDate(requireDate(date), &y, &m, &d);
    char text[40];
    std::snprintf(text, sizeof text, "%04u%02u%02u", y, m, d);
    return __INIT_CHARPTR(text);
}
