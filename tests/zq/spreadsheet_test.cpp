// The exported DBF and XLSX files opened by a real spreadsheet program: LibreOffice, run
// headless, converts each to CSV, and the values must be the table's.
#include "zq/support/zq_fixture.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <regex>

namespace zq::tool_test {
namespace {

// Converts a file to UTF-8 CSV with LibreOffice (a profile of its own under dir); the
// CSV's text, or what went wrong.
std::string convertedBySpreadsheet(const std::string &dir, const std::string &input, const std::string &inFilter) {
    std::string out = dir + "/converted-" + std::filesystem::path(input).extension().string().substr(1);
    std::string command = "HOME='" + dir + "' timeout 240 soffice --headless --norestore" +
                          " -env:UserInstallation=file://" + dir + "/office-profile" +
                          (inFilter.empty() ? "" : " --infilter='" + inFilter + "'") +
                          " --convert-to 'csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,true,false,false'" +
                          " --outdir '" + out + "' '" + input + "' >'" + dir + "/office.log' 2>&1";
    if (std::system(command.c_str()) != 0)
        return "soffice failed: " + readFile(dir + "/office.log");
    std::string csv = readFile(out + "/" + std::filesystem::path(input).stem().string() + ".csv");
    return csv.empty() ? "no CSV written: " + readFile(dir + "/office.log") : csv;
}

// The data lines, line ends as LF and dates as YYYY-MM-DD whatever the program's locale.
std::string dataLines(std::string csv) {
    csv.erase(std::remove(csv.begin(), csv.end(), '\r'), csv.end());
    csv = csv.substr(csv.find('\n') + 1);
    return std::regex_replace(csv, std::regex(R"((\d\d)/(\d\d)/(\d\d\d\d))"), "$3-$1-$2");
}

TEST_F(ZqTest, SpreadsheetProgramReadsTheExportedDbfAndXlsx) {
    makeClients();
    ASSERT_EQ(zq({"export", db(), "CLIENTES", file("clientes.dbf")}).status, 0);
    ASSERT_EQ(zq({"export", db(), "CLIENTES", file("clientes.xlsx")}).status, 0);
    const std::string expected = "1,José da Silva,1250.5,1980-02-29,TRUE,\"Cliente antigo.\nPaga em dia; à vista.\"\n"
                                 "2,Conceição,-20.25,2001-12-31,FALSE,\n"
                                 "3,,0,,TRUE,\"sem nome, \"\"aspas\"\" e vírgula\"\n"
                                 "5,Ágata,1000000,2026-11-23,TRUE,ÿçÇ fim\n";
    // The DBF's texts are Windows-1252 (language driver 0x57): the import is told so.
    EXPECT_EQ(dataLines(convertedBySpreadsheet(directory, file("clientes.dbf"), "dBase:1")), expected);
    EXPECT_EQ(dataLines(convertedBySpreadsheet(directory, file("clientes.xlsx"), "")), expected);
}

} // namespace
} // namespace zq::tool_test
