// Reading a CSV file with libcsv: a header row, then rows of as many values.
#include "import_file.h"

#include "storage_files.h"

#include <csv.h>

namespace zq::tool {
namespace {

struct CsvState {
    std::vector<std::vector<std::string>> records;
    std::vector<size_t> lines;   // line each record starts on
    std::vector<std::string> current;
    size_t line = 1;             // line the current record starts on
    size_t newlinesInside = 0;   // line breaks inside the current record's quoted values
};

void onField(void *s, size_t len, void *data) {
    auto *st = static_cast<CsvState *>(data);
    std::string value(static_cast<const char *>(s), len);
    for (char c : value)
        st->newlinesInside += c == '\n';
    st->current.push_back(std::move(value));
}

void onRecord(int, void *data) {
    auto *st = static_cast<CsvState *>(data);
    st->records.push_back(std::move(st->current));
    st->lines.push_back(st->line);
    st->current.clear();
    st->line += 1 + st->newlinesInside;
    st->newlinesInside = 0;
}

} // namespace

std::optional<ImportData> readCsv(const std::string &path, std::string &why) {
    auto bytes = readWholeFile(path);
    if (!bytes) {
        why = path + ": cannot be read";
        return std::nullopt;
    }
    size_t skip = bytes->size() >= 3 && (*bytes)[0] == 0xEF && (*bytes)[1] == 0xBB && (*bytes)[2] == 0xBF ? 3 : 0;
    csv_parser parser;
    csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI);
    CsvState st;
    size_t done = csv_parse(&parser, bytes->data() + skip, bytes->size() - skip, onField, onRecord, &st);
    bool ok = done == bytes->size() - skip && csv_fini(&parser, onField, onRecord, &st) == 0;
    if (!ok) {
        why = path + ": line " + std::to_string(st.line) + ": " + csv_strerror(csv_error(&parser));
        csv_free(&parser);
        return std::nullopt;
    }
    csv_free(&parser);
    if (st.records.empty()) {
        why = path + ": no header row";
        return std::nullopt;
    }
    ImportData data;
    data.columns = st.records[0];
    for (size_t i = 1; i < st.records.size(); ++i) {
        std::string place = "line " + std::to_string(st.lines[i]);
        if (st.records[i].size() != data.columns.size()) {
            why = path + ": " + place + ": " + std::to_string(st.records[i].size()) + " values, the header has " +
                  std::to_string(data.columns.size());
            return std::nullopt;
        }
        data.rows.push_back({place, std::move(st.records[i])});
    }
    return data;
}

} // namespace zq::tool
