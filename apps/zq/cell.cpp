// Field values to text and back, checked against the field they are meant for.
#include "cell.h"

#include "text.h"
#include "zelqa/dates.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace zq::tool {
namespace {

bool allDigits(std::string_view s) {
    for (char c : s)
        if (c < '0' || c > '9')
            return false;
    return !s.empty();
}

std::optional<double> parseNumber(const std::string &text) {
    if (text.empty())
        return 0.0;
    char *end = nullptr;
    double v = std::strtod(text.c_str(), &end);
    if (!end || *end || !std::isfinite(v))
        return std::nullopt;
    return v;
}

std::optional<bool> parseLogical(const std::string &text) {
    std::string t = upper(text);
    if (t.empty() || t == "F" || t == "N" || t == "FALSE" || t == ".F." || t == "0")
        return false;
    if (t == "T" || t == "Y" || t == "TRUE" || t == ".T." || t == "1")
        return true;
    return std::nullopt;
}

} // namespace

std::optional<double> parseDate(std::string_view text) {
    std::string t = trim(text);
    if (t.empty())
        return 0.0;
    if (t.size() == 10 && t[4] == '-' && t[7] == '-')
        t = t.substr(0, 4) + t.substr(5, 2) + t.substr(8, 2);
    if (t.size() != 8 || !allDigits(t))
        return std::nullopt;
    uint32_t y = std::stoul(t.substr(0, 4)), m = std::stoul(t.substr(4, 2)), d = std::stoul(t.substr(6, 2));
    double day = __EncodeDate(y, m, d);
    if (day == 0.0)
        return std::nullopt;
    return day;
}

std::string dateText(double day, bool withDashes) {
    if (day == 0.0)
        return "";
    uint32_t y = 0, m = 0, d = 0;
    __DecodeDate(day, &y, &m, &d);
    char out[16];
    std::snprintf(out, sizeof out, withDashes ? "%04u-%02u-%02u" : "%04u%02u%02u", y, m, d);
    return out;
}

std::string cellToText(const Cell &cell, const tables::FieldDef &field) {
    char out[64];
    switch (field.type) {
    case tables::kNumeric:
        std::snprintf(out, sizeof out, "%.*f", field.decimals > 0 ? int(field.decimals) : 0, cell.number);
        return out;
    case tables::kDate:
        return dateText(cell.number);
    case tables::kLogical:
        return cell.logical ? "T" : "F";
    default:
        return latin1ToUtf8(cell.text);
    }
}

std::optional<Cell> cellFromText(std::string_view utf8, const tables::FieldDef &field, std::string &why) {
    Cell cell;
    std::string t = trim(utf8);
    switch (field.type) {
    case tables::kNumeric:
        if (auto v = parseNumber(t)) {
            cell.number = *v;
            return cell;
        }
        why = "\"" + t + "\" is not a number";
        return std::nullopt;
    case tables::kDate:
        if (auto v = parseDate(t)) {
            cell.number = *v;
            return cell;
        }
        why = "\"" + t + "\" is not a date (YYYY-MM-DD or YYYYMMDD)";
        return std::nullopt;
    case tables::kLogical:
        if (auto v = parseLogical(t)) {
            cell.logical = *v;
            return cell;
        }
        why = "\"" + t + "\" is not a logical value (T or F)";
        return std::nullopt;
    default:
        break;
    }
    // Texts keep their leading blanks; the store drops trailing ones anyway.
    if (!utf8ToLatin1(utf8, cell.text)) {
        why = "the text has characters outside Latin-1";
        return std::nullopt;
    }
    size_t limit = field.type == tables::kMemo ? kMemoMax : size_t(std::max(field.length, 0));
    std::string kept = cell.text;
    while (!kept.empty() && kept.back() == ' ')
        kept.pop_back();
    if (kept.size() > limit) {
        why = "a text of " + std::to_string(kept.size()) + " characters is longer than the field's " +
              std::to_string(limit);
        return std::nullopt;
    }
    cell.text = kept;
    return cell;
}

} // namespace zq::tool
