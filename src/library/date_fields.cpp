// Scanning date formats and reading date fields out of text; the date format setting.
#include "library/date_fields.h"

#include "library/arguments.h"
#include "library/integer_text.h"
#include "runtime/context.h"

namespace zq::library {

namespace {

void count(DateField &field, int32_t position) {
    if (field.count++ == 0)
        field.position = position;
}

} // namespace

DateLayout scanDateFormat(std::string_view format) {
    DateLayout layout;
    for (size_t i = 0; i < format.size(); ++i) {
        auto position = static_cast<int32_t>(i);
        switch (format[i]) {
        case 'd': case 'D': count(layout.day, position); break;
        case 'm': case 'M': count(layout.month, position); break;
        case 'y': case 'Y': count(layout.year, position); break;
        default: layout.separator = static_cast<unsigned char>(format[i]);
        }
    }
    return layout;
}

int32_t readDateField(std::string_view input, DateField field) {
    if (field.count == 0 || static_cast<size_t>(field.position) >= input.size())
        return 0;
    return integerOfText(input.substr(static_cast<size_t>(field.position), static_cast<size_t>(field.count)));
}

std::string_view dateFormatSetting() {
    pObj format = runtime::context().settings[kDateFormatSetting - 1];
    return isText(format) ? textOf(format) : std::string_view("mm/dd/yy");
}

} // namespace zq::library
