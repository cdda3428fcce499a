// Reading key expressions, and building and comparing the keys of index entries.
#include "tables/index_keys.h"

#include "runtime/raise.h"
#include "zelqa/dates.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace zq::tables {
namespace {

bool isNameCharacter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

std::string trimmed(const std::string &s) {
    size_t first = s.find_first_not_of(' ');
    if (first == std::string::npos)
        return std::string();
    return s.substr(first, s.find_last_not_of(' ') - first + 1);
}

// The field name one part of a key expression names.
std::string partName(std::string part) {
    if (size_t arrow = part.find("->"); arrow != std::string::npos) {
        part.erase(0, arrow + 2);
        part.erase(0, part.find_first_not_of(' ') == std::string::npos ? part.size() : part.find_first_not_of(' '));
    }
    if (part.size() >= 5 && part.compare(0, 4, "STR(") == 0)
        part.erase(0, 4);
    else if (part.compare(0, 5, "DTOS(") == 0)
        part.erase(0, 5);
    std::string name;
    for (char c : part)
        if (isNameCharacter(c) && name.size() < 79)
            name.push_back(c);
    return name;
}

const FieldDef *fieldOf(const TableDef &def, int32_t field) {
    return field >= 1 && size_t(field) <= def.fields.size() ? &def.fields[size_t(field) - 1] : nullptr;
}

void putText(uint8_t *to, std::string_view text, uint32_t width, bool rightAligned) {
    std::memset(to, ' ', width);
    size_t n = std::min<size_t>(text.size(), width);
    std::memcpy(to + (rightAligned ? width - n : 0), text.data(), n);
}

double slotDouble(const uint8_t *slot) {
    double d;
    std::memcpy(&d, slot, 8);
    return d;
}

} // namespace

std::vector<std::string> keyFieldNames(const std::string &expression) {
    std::string text = trimmed(expression);
    for (char &c : text)
        if (c >= 'a' && c <= 'z')
            c = char(c - 32);
    std::vector<std::string> names;
    if (text.empty())
        return names;
    size_t start = 0;
    for (;;) {
        size_t plus = text.find('+', start);
        names.push_back(partName(text.substr(start, plus == std::string::npos ? std::string::npos : plus - start)));
        if (plus == std::string::npos)
            return names;
        start = plus + 1;
    }
}

uint32_t recordedKeyLength(const TableDef &def, const std::vector<int32_t> &keyFields) {
    uint32_t total = 0, previous = 0;
    for (int32_t field : keyFields) {
        const FieldDef *f = fieldOf(def, field);
        uint32_t size = 0;
        if (f) {
            switch (f->type) {
            case kNumeric:
            case kDate: size = 8; break;
            case kLogical: size = previous + 1; break;
            case kMemo:
            case kInteger: size = 4; break;
            default: size = uint32_t(std::max(f->length, 0)); break;
            }
        }
        total += size;
        previous = size;
    }
    return total;
}

uint32_t builtKeyWidth(const TableDef &def, const std::vector<int32_t> &keyFields) {
    uint32_t total = 0;
    for (int32_t field : keyFields) {
        const FieldDef *f = fieldOf(def, field);
        if (!f)
            continue;
        switch (f->type) {
        case kDate: total += 8; break;
        case kLogical: total += 1; break;
        case kNumeric:
        case kCharacter: total += uint32_t(std::max(f->length, 0)); break;
        default: break;
        }
    }
    return total;
}

uint32_t keyAreaWidth(const TableDef &def, const IndexDef &index) {
    return std::max(builtKeyWidth(def, index.keyFields), index.attribute);
}

uint32_t entrySize(const TableDef &def, const IndexDef &index) { return 4 + keyAreaWidth(def, index); }

void writeEntry(const AreaRecord &a, const IndexDef &index, uint32_t record, uint8_t *entry) {
    std::memcpy(entry, &record, 4);
    uint8_t *at = entry + 4;
    for (int32_t field : index.keyFields) {
        const FieldDef *f = fieldOf(a.def, field);
        if (!f)
            runtime::raiseError(ZQ_ERR_RUNTIME, 19);
        const uint8_t *slot = a.buffer.data() + f->slot;
        uint32_t width = uint32_t(std::max(f->length, 0));
        switch (f->type) {
        case kNumeric: {
            char text[400];
            std::snprintf(text, sizeof text, "%.*f", std::clamp(f->decimals, 0, 60), slotDouble(slot));
            std::string s = text;
            if (s.size() > width)
                std::memcpy(at, s.data(), width); // its first declared-length characters
            else
                putText(at, s, width, true);
            at += width;
            break;
        }
        case kDate: {
            double day = slotDouble(slot);
            std::string s;
            if (day != 0) {
                uint32_t y = 0, m = 0, d = 0;
                __DecodeDate(day, &y, &m, &d);
                char text[40];
                std::snprintf(text, sizeof text, "%04u%02u%02u", y, m, d);
                s = text;
            }
            putText(at, s, 8, false);
            at += 8;
            break;
        }
        case kCharacter: {
            const void *end = std::memchr(slot, 0, width);
            size_t n = end ? size_t(static_cast<const uint8_t *>(end) - slot) : width;
            putText(at, std::string_view(reinterpret_cast<const char *>(slot), n), width, false);
            at += width;
            break;
        }
        case kLogical:
            *at++ = slot[0];
            break;
        default:
            runtime::raiseError(ZQ_ERR_RUNTIME, 19);
        }
    }
}

std::vector<uint8_t> buildEntry(const AreaRecord &a, const IndexDef &index, uint32_t record) {
    std::vector<uint8_t> entry(entrySize(a.def, index), 0);
    writeEntry(a, index, record, entry.data());
    return entry;
}

int compareKeys(const uint8_t *left, const uint8_t *right, uint32_t length) {
    int c = std::memcmp(left, right, length);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

int16_t compareEntries(void *key, void *record, int16_t, void *extra, void *, void *) {
    uint32_t length = *static_cast<const uint32_t *>(extra);
    return int16_t(compareKeys(static_cast<const uint8_t *>(key) + 4, static_cast<const uint8_t *>(record) + 4, length));
}

std::string keyExpressionOf(const TableDef &def, const IndexDef &index) {
    std::string expression;
    for (int32_t field : index.keyFields) {
        if (!expression.empty())
            expression += "+";
        if (const FieldDef *f = fieldOf(def, field))
            expression += f->name;
    }
    return expression;
}

} // namespace zq::tables
