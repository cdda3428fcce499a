// Date pictures: where the day, month and year fields lie in a format such as "dd/mm/yy".
#pragma once

#include <cstdint>
#include <string_view>

namespace zq::library {

// One field: the position of its letter's first occurrence and how many times the letter
// occurs. The letters are taken to be contiguous; a field whose letter is missing has
// count 0 and reads as 0.
struct DateField {
    int32_t position = -1;
    int32_t count = 0;
};

struct DateLayout {
    DateField day, month, year;
    int separator = -1; // the last byte that is none of d, m, y (either case); -1 when none
};

// Scans a format once for d, m and y in either case.
DateLayout scanDateFormat(std::string_view format);

// The field's number in the input: the integer conversion of the bytes at its place.
int32_t readDateField(std::string_view input, DateField field);

// The settings slot of the date format.
inline constexpr int kDateFormatSetting = 4;

// The date format setting ("mm/dd/yy" at start-up).
std::string_view dateFormatSetting();

} // namespace zq::library
