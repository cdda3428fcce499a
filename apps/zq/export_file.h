// Files a table is exported to: CSV, DBF (with its memo file) and XLSX, one writer each.
#pragma once

#include "cell.h"

#include <memory>
#include <string>
#include <vector>

namespace zq::tool {

class ExportFile {
public:
    virtual ~ExportFile() = default;
    // Each returns false with the reason in why; the caller then removes the file.
    virtual bool begin(const std::vector<tables::FieldDef> &fields, std::string &why) = 0;
    virtual bool row(const std::vector<Cell> &cells, std::string &why) = 0;
    virtual bool finish(std::string &why) = 0;
};

std::unique_ptr<ExportFile> csvExport(const std::string &path);
std::unique_ptr<ExportFile> dbfExport(const std::string &path);
std::unique_ptr<ExportFile> xlsxExport(const std::string &path);

// The writer for the file's extension (.csv, .dbf, .xlsx, in any case), or null.
std::unique_ptr<ExportFile> exportFor(const std::string &path);

// The file's extension, lowered, without the dot.
std::string extensionOf(const std::string &path);

} // namespace zq::tool
