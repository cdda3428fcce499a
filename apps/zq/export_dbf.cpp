// Export to DBF: a dBASE III file written with shapelib, Latin-1 texts (language driver
// 0x57), and a .dbt memo file beside it when the table has memo fields.
#include "export_file.h"

#include "memo_file.h"
#include "text.h"

#include <shapefil.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <set>

namespace zq::tool {
namespace {

constexpr int kDbfNameMax = 10;    // characters of a DBF field name
constexpr int kDbfTextMax = 254;   // characters of a DBF character field
constexpr int kDbfNumberMax = 19;  // digits of a DBF numeric field
constexpr uint8_t kVersionWithMemo = 0x83;

// Field names cut to 10 characters; a cut that repeats an earlier name ends in a number.
std::vector<std::string> dbfNames(const std::vector<tables::FieldDef> &fields) {
    std::vector<std::string> names;
    std::set<std::string> taken;
    for (const auto &f : fields) {
        std::string name = f.name.substr(0, kDbfNameMax);
        for (int n = 1; taken.count(name); ++n) {
            std::string suffix = std::to_string(n);
            name = f.name.substr(0, kDbfNameMax - suffix.size()) + suffix;
        }
        taken.insert(name);
        names.push_back(name);
    }
    return names;
}

class DbfExport : public ExportFile {
public:
    explicit DbfExport(std::string path) : path_(std::move(path)) {}
    ~DbfExport() override {
        if (dbf_)
            DBFClose(dbf_);
    }

    bool begin(const std::vector<tables::FieldDef> &fields, std::string &why) override {
        fields_ = fields;
        dbf_ = DBFCreateEx(path_.c_str(), "LDID/87");
        if (!dbf_) {
            why = path_ + ": cannot be written";
            return false;
        }
        std::vector<std::string> names = dbfNames(fields);
        for (size_t i = 0; i < fields.size(); ++i)
            if (!addField(fields[i], names[i], why))
                return false;
        if (hasMemo_ && !memo_.open(memoPathOf(path_, false))) {
            why = memoPathOf(path_, false) + ": cannot be written";
            return false;
        }
        return true;
    }

    bool row(const std::vector<Cell> &cells, std::string &why) override {
        for (size_t i = 0; i < cells.size(); ++i)
            if (!writeCell(int(i), cells[i], why)) {
                why = "row " + std::to_string(rows_ + 1) + ", field " + fields_[i].name + ": " + why;
                return false;
            }
        ++rows_;
        return true;
    }

    bool finish(std::string &why) override {
        DBFClose(dbf_);
        dbf_ = nullptr;
        if (hasMemo_ && (!memo_.close() || !markMemo())) {
            why = path_ + ": cannot be written";
            return false;
        }
        return true;
    }

private:
    bool addField(const tables::FieldDef &f, const std::string &name, std::string &why) {
        int at = -1;
        switch (f.type) {
        case tables::kNumeric: {
            int width = std::clamp(std::max<int>(f.length, f.decimals > 0 ? f.decimals + 2 : 1), 1, kDbfNumberMax);
            at = DBFAddField(dbf_, name.c_str(), FTDouble, width, std::clamp(f.decimals, 0, width - 1));
            break;
        }
        case tables::kDate:
            at = DBFAddField(dbf_, name.c_str(), FTDate, 8, 0);
            break;
        case tables::kLogical:
            at = DBFAddField(dbf_, name.c_str(), FTLogical, 1, 0);
            break;
        case tables::kMemo:
            at = DBFAddNativeFieldType(dbf_, name.c_str(), 'M', 10, 0);
            hasMemo_ = true;
            break;
        default:
            if (f.length > kDbfTextMax) {
                why = "field " + f.name + " holds " + std::to_string(f.length) +
                      " characters; a DBF character field holds at most 254";
                return false;
            }
            at = DBFAddField(dbf_, name.c_str(), FTString, std::max(f.length, 1), 0);
        }
        if (at < 0)
            why = path_ + ": field " + f.name + " cannot be added";
        return at >= 0;
    }

    bool writeCell(int i, const Cell &cell, std::string &why) {
        const tables::FieldDef &f = fields_[size_t(i)];
        switch (f.type) {
        case tables::kNumeric:
            if (DBFWriteDoubleAttribute(dbf_, rows_, i, cell.number))
                return true;
            why = "the value " + cellToText(cell, f) + " does not fit the DBF field's " + std::to_string(width(i)) +
                  " characters";
            return false;
        case tables::kDate: // shapelib takes a date value as a number: the text goes in as it is
            return DBFWriteAttributeDirectly(dbf_, rows_, i, padded(dateText(cell.number, false), 8, false).data()) ||
                   failed(why);
        case tables::kLogical:
            return DBFWriteLogicalAttribute(dbf_, rows_, i, cell.logical ? 'T' : 'F') || failed(why);
        case tables::kMemo: {
            auto block = memo_.add(cell.text);
            if (!block) {
                why = "the memo text cannot be written (it holds the byte 0x1A, or the memo file failed)";
                return false;
            }
            std::string ref = *block ? std::to_string(*block) : "";
            return DBFWriteAttributeDirectly(dbf_, rows_, i, padded(ref, 10, true).data()) || failed(why);
        }
        default:
            return DBFWriteStringAttribute(dbf_, rows_, i, cell.text.c_str()) || failed(why);
        }
    }

    static std::string padded(const std::string &text, size_t width, bool right) {
        std::string blanks(width - std::min(width, text.size()), ' ');
        return right ? blanks + text : text + blanks;
    }

    int width(int i) {
        int w = 0, d = 0;
        DBFGetFieldInfo(dbf_, i, nullptr, &w, &d);
        return w;
    }

    bool failed(std::string &why) {
        why = path_ + ": cannot be written";
        return false;
    }

    // shapelib writes version 3; a file with a memo file says so in its first byte.
    bool markMemo() {
        std::FILE *f = std::fopen(path_.c_str(), "r+b");
        if (!f)
            return false;
        bool ok = std::fputc(kVersionWithMemo, f) != EOF;
        return std::fclose(f) == 0 && ok;
    }

    std::string path_;
    DBFHandle dbf_ = nullptr;
    std::vector<tables::FieldDef> fields_;
    MemoWriter memo_;
    bool hasMemo_ = false;
    int rows_ = 0;
};

} // namespace

std::unique_ptr<ExportFile> dbfExport(const std::string &path) { return std::make_unique<DbfExport>(path); }

} // namespace zq::tool
