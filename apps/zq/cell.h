// One field value on its way between a table and a file, and its text form.
//
// The text form is what CSV files and the show command use: numbers with the field's
// decimals and a point, dates as YYYY-MM-DD (empty for the empty date), logicals T or F,
// texts as UTF-8.
#pragma once

#include "tables/definition.h"

#include <optional>
#include <string>
#include <string_view>

namespace zq::tool {

struct Cell {
    std::string text;     // C and M: the stored Latin-1 text
    double number = 0;    // N: the value; D: the day number, 0 for the empty date
    bool logical = false; // L
};

// The longest memo text a memo record holds (its zero byte takes the last byte).
constexpr size_t kMemoMax = 15359;

std::string cellToText(const Cell &cell, const tables::FieldDef &field);

// The value of a text for a field; none with the reason in why (a number that is not one,
// a malformed date, a text longer than the field or not Latin-1).
std::optional<Cell> cellFromText(std::string_view utf8, const tables::FieldDef &field, std::string &why);

// Dates: YYYY-MM-DD or YYYYMMDD (or empty); none when malformed or not a calendar day.
std::optional<double> parseDate(std::string_view text);
std::string dateText(double day, bool withDashes = true);

} // namespace zq::tool
