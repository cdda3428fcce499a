// Export to XLSX with libxlsxwriter: a header row, numbers with the field's decimals,
// dates as dates, logicals as booleans, texts in UTF-8.
#include "export_file.h"

#include "text.h"

#include <xlsxwriter.h>

namespace zq::tool {
namespace {

class XlsxExport : public ExportFile {
public:
    explicit XlsxExport(std::string path) : path_(std::move(path)) {}
    ~XlsxExport() override {
        if (book_)
            workbook_close(book_);
    }

    bool begin(const std::vector<tables::FieldDef> &fields, std::string &why) override {
        fields_ = fields;
        book_ = workbook_new(path_.c_str());
        sheet_ = book_ ? workbook_add_worksheet(book_, nullptr) : nullptr;
        if (!sheet_) {
            why = path_ + ": cannot be written";
            return false;
        }
        dateFormat_ = workbook_add_format(book_);
        format_set_num_format(dateFormat_, "yyyy-mm-dd");
        for (size_t i = 0; i < fields.size(); ++i) {
            numberFormats_.push_back(numberFormat(fields[i]));
            worksheet_write_string(sheet_, 0, lxw_col_t(i), latin1ToUtf8(fields[i].name).c_str(), nullptr);
        }
        return true;
    }

    bool row(const std::vector<Cell> &cells, std::string &why) override {
        lxw_row_t r = lxw_row_t(++rows_);
        for (size_t i = 0; i < cells.size(); ++i) {
            lxw_col_t c = lxw_col_t(i);
            const Cell &cell = cells[i];
            lxw_error e = LXW_NO_ERROR;
            switch (fields_[i].type) {
            case tables::kNumeric:
                e = worksheet_write_number(sheet_, r, c, cell.number, numberFormats_[i]);
                break;
            case tables::kDate:
                // A spreadsheet counts days from 30 December 1899 too; the empty date stays empty.
                if (cell.number != 0.0)
                    e = worksheet_write_number(sheet_, r, c, cell.number, dateFormat_);
                break;
            case tables::kLogical:
                e = worksheet_write_boolean(sheet_, r, c, cell.logical, nullptr);
                break;
            default:
                if (!cell.text.empty())
                    e = worksheet_write_string(sheet_, r, c, latin1ToUtf8(cell.text).c_str(), nullptr);
            }
            if (e != LXW_NO_ERROR) {
                why = "row " + std::to_string(rows_) + ", field " + fields_[i].name + ": " + lxw_strerror(e);
                return false;
            }
        }
        return true;
    }

    bool finish(std::string &why) override {
        lxw_error e = workbook_close(book_);
        book_ = nullptr;
        if (e != LXW_NO_ERROR)
            why = path_ + ": " + lxw_strerror(e);
        return e == LXW_NO_ERROR;
    }

private:
    lxw_format *numberFormat(const tables::FieldDef &f) {
        if (f.type != tables::kNumeric)
            return nullptr;
        lxw_format *format = workbook_add_format(book_);
        std::string pattern = f.decimals > 0 ? "0." + std::string(size_t(f.decimals), '0') : "0";
        format_set_num_format(format, pattern.c_str());
        return format;
    }

    std::string path_;
    lxw_workbook *book_ = nullptr;
    lxw_worksheet *sheet_ = nullptr;
    lxw_format *dateFormat_ = nullptr;
    std::vector<lxw_format *> numberFormats_;
    std::vector<tables::FieldDef> fields_;
    uint32_t rows_ = 0;
};

} // namespace

std::unique_ptr<ExportFile> xlsxExport(const std::string &path) { return std::make_unique<XlsxExport>(path); }

} // namespace zq::tool
