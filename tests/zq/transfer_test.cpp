// zq export and import: round trips through CSV and DBF, a DBF read by an independent
// reader, a DBF made from the dBASE III layout by hand, XLSX contents, the progress bar.
#include "zq/support/zq_fixture.h"

#include <cstdlib>
#include <cstring>

namespace zq::tool_test {
namespace {

// Runs a python3 script of the system's own Python (where python3-dbfread lives).
std::string python(const std::string &script, const std::string &dir) {
    writeFile(dir + "/script.py", script);
    std::string out = dir + "/script.out";
    std::string command = "cd '" + dir + "' && /usr/bin/python3 script.py >script.out 2>&1";
    int status = std::system(command.c_str());
    return (status == 0 ? "" : "FAILED: ") + readFile(out);
}

class ZqRoundTrip : public ZqTest, public ::testing::WithParamInterface<const char *> {};

TEST_P(ZqRoundTrip, ExportThenImportGivesTheSameRows) {
    makeClients();
    std::vector<std::string> before = rowsOf("CLIENTES");
    std::erase_if(before, [](const std::string &r) { return r[0] == '*'; });
    ASSERT_EQ(before.size(), 4u);
    std::string exported = file(std::string("clientes.") + GetParam());
    ToolRun out = zq({"export", db(), "CLIENTES", exported});
    ASSERT_EQ(out.status, 0) << out.err;
    EXPECT_EQ(out.out, "exported 4 rows of CLIENTES to " + exported + "\n");

    ToolRun in = zq({"import", db(), "clientes", exported});
    ASSERT_EQ(in.status, 0) << in.err;
    EXPECT_EQ(rowsOf("CLIENTES"), before);

    ToolRun created = zq({"import", db(), "COPIA", exported, "--create"});
    ASSERT_EQ(created.status, 0) << created.err;
    EXPECT_EQ(rowsOf("COPIA"), before);
    ToolRun clean = zq({"check", db()}); // the indexes, made again, agree with the rows
    EXPECT_EQ(clean.status, 0) << clean.out;
    EXPECT_TRUE(has(zq({"struct", db(), "CLIENTES"}).out, "CLI_NOME  ")) << "the indexes are lost";
    EXPECT_FALSE(has(zq({"ls", db()}).out, "ZQ_IMPORT")) << "the staging table is left behind";
}

INSTANTIATE_TEST_SUITE_P(Formats, ZqRoundTrip, ::testing::Values("csv", "dbf"));

TEST_F(ZqTest, ExportedDbfReadsTheSameInAnIndependentReader) {
    makeClients();
    ASSERT_EQ(zq({"export", db(), "CLIENTES", file("c.dbf")}).status, 0);
    std::string rows = python(R"PY(import dbfread
def show(v):
    if v is None: return ''
    if isinstance(v, bool): return 'T' if v else 'F'
    if isinstance(v, float): return '%.2f' % v
    return str(v)
for r in dbfread.DBF('c.dbf'):
    print('|'.join(show(v) for v in r.values()).replace('\n', '/'))
)PY",
                              directory);
    EXPECT_EQ(rows, "1|José da Silva|1250.50|1980-02-29|T|Cliente antigo./Paga em dia; à vista.\n"
                    "2|Conceição|-20.25|2001-12-31|F|\n"
                    "3||0.00||T|sem nome, \"aspas\" e vírgula\n"
                    "5|Ágata|1000000.00|2026-11-23|T|ÿçÇ fim\n");
}

TEST_F(ZqTest, ExportedXlsxHoldsTheValues) {
    makeClients();
    ASSERT_EQ(zq({"export", db(), "CLIENTES", file("c.xlsx")}).status, 0);
    std::string cells = python(R"PY(import zipfile, re
z = zipfile.ZipFile('c.xlsx')
strings = re.findall(r'<t[^>]*>([^<]*)</t>', z.read('xl/sharedStrings.xml').decode('utf-8'))
sheet = z.read('xl/worksheets/sheet1.xml').decode('utf-8')
for row in re.findall(r'<row[^>]*>(.*?)</row>', sheet):
    out = []
    for kind, value in re.findall(r'<c r="[A-Z]+\d+"(?: s="\d+")?(?: t="(\w+)")?><v>([^<]*)</v></c>', row):
        out.append(strings[int(value)] if kind == 's' else ('b' + value if kind == 'b' else value))
    print('|'.join(out))
)PY",
                               directory);
    std::string day = std::to_string(int(__EncodeDate(1980, 2, 29)));
    EXPECT_TRUE(has(cells, "CODIGO|NOME|SALDO|NASC|ATIVO|OBS\n")) << cells;
    EXPECT_TRUE(has(cells, "1|José da Silva|1250.5|" + day + "|b1|Cliente antigo.\nPaga em dia; à vista.\n")) << cells;
    EXPECT_TRUE(has(cells, "3|0|b1|sem nome")) << cells; // the empty text and the empty date stay empty
}

// A dBASE III file with a memo file, laid out byte by byte.
struct HandMadeDbf {
    std::string dbf, dbt;
};

HandMadeDbf handMadeDbf() {
    struct Field {
        const char *name;
        char type;
        uint8_t length, decimals;
    };
    const Field fields[] = {{"NOME", 'C', 12, 0}, {"VALOR", 'N', 8, 2}, {"DATA", 'D', 8, 0}, {"OK", 'L', 1, 0},
                            {"NOTA", 'M', 10, 0}};
    const char *records[] = {" Mar\xEDlia" "     " "   12.50" "20240315" "T" "         1",
                             "*Apagada" "     " "    1.00" "20240101" "F" "          ",
                             " Z\xE9" "          " "   -3.00" "        " "F" "          "};
    auto u16 = [](uint16_t v) { return std::string{char(v & 0xFF), char(v >> 8)}; };
    auto u32 = [&](uint32_t v) { return u16(uint16_t(v)) + u16(uint16_t(v >> 16)); };
    uint16_t recordLength = 1 + 12 + 8 + 8 + 1 + 10;
    std::string header = std::string{char(0x83), char(124), 11, 23} + u32(3) + u16(32 + 5 * 32 + 1) +
                         u16(recordLength) + std::string(20, '\0');
    header[29] = char(0x57);
    for (const Field &f : fields) {
        std::string d(32, '\0');
        std::copy(f.name, f.name + std::strlen(f.name), d.begin());
        d[11] = f.type;
        d[16] = char(f.length);
        d[17] = char(f.decimals);
        header += d;
    }
    header += '\x0D';
    for (const char *r : records)
        header += std::string(r, recordLength);
    header += '\x1A';
    std::string memo = u32(2) + std::string(508, '\0');
    std::string text = "Primeira linha\r\nsegunda \xE0 parte\x1A\x1A";
    memo += text + std::string(512 - text.size(), '\0');
    return {header, memo};
}

TEST_F(ZqTest, HandMadeDbfIsImported) {
    HandMadeDbf made = handMadeDbf();
    writeFile(file("manual.dbf"), made.dbf);
    writeFile(file("manual.dbt"), made.dbt);
    makeClients();
    ToolRun r = zq({"import", db(), "MANUAL", file("manual.dbf"), "--create"});
    ASSERT_EQ(r.status, 0) << r.err;
    std::string day = std::to_string(__EncodeDate(2024, 3, 15));
    day = day.substr(0, day.find('.')) + ".0000";
    EXPECT_EQ(rowsOf("MANUAL"), (std::vector<std::string>{
                                    "Mar\xEDlia|12.5000|" + day + "|T|Primeira linha\r\nsegunda \xE0 parte",
                                    "Z\xE9|-3.0000|0.0000|F|"}));
    ToolRun shape = zq({"struct", db(), "MANUAL"});
    EXPECT_TRUE(has(shape.out, "  2  VALOR                   N         8    2\n")) << shape.out;
}

TEST_F(ZqTest, ProgressIsDrawnOnlyWhenStandardErrorIsATerminal) {
    createAndUse("GRANDE", {{"N", "N", 8, 0}});
    for (int i = 0; i < 2500; ++i) {
        __DBAPPEND(nullptr);
        __SetField(nullptr, table_test::num(1), table_test::num(i));
    }
    __Commit(nullptr);
    ToolRun plain = zq({"export", db(), "GRANDE", file("plain.csv")});
    ASSERT_EQ(plain.status, 0);
    EXPECT_EQ(plain.err, "");
    // script(1) runs the tool on a pseudo-terminal and copies what it wrote there.
    std::string command = "script -qec \"" + std::string(ZQ_APPS_BIN_DIR) + "/zq export '" + db() + "' GRANDE '" +
                          file("shown.csv") + "'\" /dev/null >'" + file("terminal.out") + "' 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0) << readFile(file("terminal.out"));
    std::string shown = readFile(file("terminal.out"));
    EXPECT_TRUE(has(shown, "\rexport GRANDE [" + std::string(30, '#') + "] 2500/2500")) << shown;
    EXPECT_TRUE(has(shown, "exported 2500 rows of GRANDE")) << shown;
}

} // namespace
} // namespace zq::tool_test
