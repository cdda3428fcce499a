// Reading a DBF file with shapelib: its fields become the structure, its live records the
// rows; memo texts come from the .dbt file beside it.
#include "import_file.h"

#include "memo_file.h"
#include "text.h"

#include <shapefil.h>

#include <cstdio>
#include <memory>

namespace zq::tool {
namespace {

void quiet(const char *) {} // shapelib's own messages: the tool says what went wrong

struct DbfCloser {
    void operator()(DBFInfo *h) const { DBFClose(h); }
};
struct FileCloser {
    void operator()(std::FILE *f) const { std::fclose(f); }
};

std::optional<tables::FieldDef> fieldOf(DBFHandle h, int i) {
    char name[XBASE_FLDNAME_LEN_READ + 1] = {};
    int width = 0, decimals = 0;
    DBFGetFieldInfo(h, i, name, &width, &decimals);
    tables::FieldDef f;
    f.name = upper(name);
    f.length = width;
    f.decimals = decimals;
    switch (DBFGetNativeFieldType(h, i)) {
    case 'N':
    case 'F':
        f.type = tables::kNumeric;
        break;
    case 'D':
        f.type = tables::kDate;
        f.length = 8;
        break;
    case 'L':
        f.type = tables::kLogical;
        break;
    case 'M':
        f.type = tables::kMemo;
        f.length = 4;
        break;
    case 'C':
        f.type = tables::kCharacter;
        break;
    default:
        return std::nullopt;
    }
    return f;
}

// One value as text: numbers and dates without their blanks, "00000000" as no date.
std::string valueOf(DBFHandle h, int record, int i, const tables::FieldDef &f, std::FILE *memo, bool utf8,
                    std::string &why) {
    const char *raw = DBFReadStringAttribute(h, record, i);
    std::string v = raw ? raw : "";
    if (f.type == tables::kCharacter) {
        while (!v.empty() && v.back() == ' ')
            v.pop_back();
        return utf8 ? v : latin1ToUtf8(v);
    }
    v = trim(v);
    if (f.type == tables::kDate && v.find_first_not_of('0') == std::string::npos)
        return "";
    if (f.type == tables::kLogical)
        return v == "?" ? "" : v;
    if (f.type != tables::kMemo)
        return v;
    long block = v.empty() ? 0 : std::strtol(v.c_str(), nullptr, 10);
    if (block <= 0)
        return "";
    auto text = memo ? readMemoText(memo, uint32_t(block)) : std::nullopt;
    if (!text) {
        why = "memo block " + std::to_string(block) + " is not in the memo file";
        return "";
    }
    return utf8 ? *text : latin1ToUtf8(*text);
}

} // namespace

std::optional<ImportData> readDbf(const std::string &path, std::string &why) {
    SAHooks hooks;
    SASetupDefaultHooks(&hooks);
    hooks.Error = quiet;
    std::unique_ptr<DBFInfo, DbfCloser> h(DBFOpenLL(path.c_str(), "rb", &hooks));
    if (!h) {
        why = path + ": cannot be read as a DBF file";
        return std::nullopt;
    }
    ImportData data;
    bool hasMemo = false;
    for (int i = 0; i < DBFGetFieldCount(h.get()); ++i) {
        auto f = fieldOf(h.get(), i);
        if (!f) {
            why = path + ": field " + std::to_string(i + 1) + " has a type the tables do not hold";
            return std::nullopt;
        }
        hasMemo = hasMemo || f->type == tables::kMemo;
        data.columns.push_back(f->name);
        data.structure.push_back(*f);
    }
    std::unique_ptr<std::FILE, FileCloser> memo;
    if (hasMemo) {
        memo.reset(std::fopen(memoPathOf(path, true).c_str(), "rb"));
        if (!memo) {
            why = path + ": its memo file " + memoPathOf(path, true) + " cannot be read";
            return std::nullopt;
        }
    }
    const char *codePage = DBFGetCodePage(h.get());
    bool utf8 = codePage && (upper(codePage) == "UTF-8" || upper(codePage) == "UTF8");
    int count = DBFGetRecordCount(h.get());
    for (int r = 0; r < count; ++r) {
        std::string place = "record " + std::to_string(r + 1);
        if (!DBFReadTuple(h.get(), r)) {
            why = path + ": " + place + " of " + std::to_string(count) + " cannot be read: the file is cut short";
            return std::nullopt;
        }
        if (DBFIsRecordDeleted(h.get(), r))
            continue;
        ImportRow row{place, {}};
        for (size_t i = 0; i < data.structure.size(); ++i) {
            row.values.push_back(valueOf(h.get(), r, int(i), data.structure[i], memo.get(), utf8, why));
            if (!why.empty()) {
                why = path + ": " + place + ", field " + data.structure[i].name + ": " + why;
                return std::nullopt;
            }
        }
        data.rows.push_back(std::move(row));
    }
    return data;
}

} // namespace zq::tool
