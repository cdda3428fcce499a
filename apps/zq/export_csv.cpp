// Export to CSV: UTF-8, a header row of field names, then one line per row.
#include "export_file.h"

#include "text.h"

#include <cstdio>

namespace zq::tool {
namespace {

// Quotes a field only when it needs it, so that numbers stay numbers to a spreadsheet.
std::string csvField(const std::string &value) {
    bool quote = value.find_first_of(",\"\r\n") != std::string::npos ||
                 (!value.empty() && (value.front() == ' ' || value.back() == ' '));
    if (!quote)
        return value;
    std::string q = "\"";
    for (char c : value)
        q += c == '"' ? std::string("\"\"") : std::string(1, c);
    return q + "\"";
}

class CsvExport : public ExportFile {
public:
    explicit CsvExport(std::string path) : path_(std::move(path)) {}
    ~CsvExport() override {
        if (out_)
            std::fclose(out_);
    }

    bool begin(const std::vector<tables::FieldDef> &fields, std::string &why) override {
        fields_ = fields;
        out_ = std::fopen(path_.c_str(), "wb");
        if (!out_) {
            why = path_ + ": cannot be written";
            return false;
        }
        std::vector<std::string> names;
        for (const auto &f : fields)
            names.push_back(latin1ToUtf8(f.name));
        return line(names, why);
    }

    bool row(const std::vector<Cell> &cells, std::string &why) override {
        std::vector<std::string> values;
        for (size_t i = 0; i < cells.size(); ++i)
            values.push_back(cellToText(cells[i], fields_[i]));
        return line(values, why);
    }

    bool finish(std::string &why) override {
        bool ok = std::fclose(out_) == 0;
        out_ = nullptr;
        if (!ok)
            why = path_ + ": cannot be written";
        return ok;
    }

private:
    bool line(const std::vector<std::string> &values, std::string &why) {
        std::string text;
        for (size_t i = 0; i < values.size(); ++i)
            text += (i ? "," : "") + csvField(values[i]);
        text += "\r\n";
        if (std::fwrite(text.data(), 1, text.size(), out_) == text.size())
            return true;
        why = path_ + ": cannot be written";
        return false;
    }

    std::string path_;
    std::FILE *out_ = nullptr;
    std::vector<tables::FieldDef> fields_;
};

} // namespace

std::unique_ptr<ExportFile> csvExport(const std::string &path) { return std::make_unique<CsvExport>(path); }

std::string extensionOf(const std::string &path) {
    size_t dot = path.find_last_of('.');
    size_t slash = path.find_last_of("/\\");
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash))
        return "";
    std::string ext = path.substr(dot + 1);
    for (char &c : ext)
        c = char(std::tolower(static_cast<unsigned char>(c)));
    return ext;
}

std::unique_ptr<ExportFile> exportFor(const std::string &path) {
    std::string ext = extensionOf(path);
    if (ext == "csv")
        return csvExport(path);
    if (ext == "dbf")
        return dbfExport(path);
    if (ext == "xlsx")
        return xlsxExport(path);
    return nullptr;
}

} // namespace zq::tool
