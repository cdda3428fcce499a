// zq import of bad files: a clear message naming the place, status 1, the table unchanged.
#include "zq/support/zq_fixture.h"

namespace zq::tool_test {
namespace {

const char *kHeader = "CODIGO,NOME,SALDO,NASC,ATIVO,OBS\n";

struct BadFile {
    const char *name;
    const char *file;     // written beside DB
    std::string content;  // "@DBF-CUT" for an exported DBF cut in its third record
    const char *message;  // in standard error
};

void PrintTo(const BadFile &c, std::ostream *os) { *os << c.name; } // as the test's name

class ZqBadInput : public ZqTest, public ::testing::WithParamInterface<BadFile> {};

TEST_P(ZqBadInput, ReportsThePlaceAndImportsNothing) {
    makeClients();
    std::vector<std::string> before = rowsOf("CLIENTES");
    const BadFile &bad = GetParam();
    std::string path = file(bad.file);
    if (bad.content == "@DBF-CUT") {
        ASSERT_EQ(zq({"export", db(), "CLIENTES", path}).status, 0);
        std::string bytes = readFile(path);
        size_t headerLength = uint8_t(bytes[8]) | uint8_t(bytes[9]) << 8;
        size_t recordLength = uint8_t(bytes[10]) | uint8_t(bytes[11]) << 8;
        writeFile(path, bytes.substr(0, headerLength + 2 * recordLength + recordLength / 2));
    } else {
        writeFile(path, bad.content);
    }
    auto files = snapshot(db());
    ToolRun r = zq({"import", db(), "CLIENTES", path});
    EXPECT_EQ(r.status, 1) << r.out << r.err;
    EXPECT_TRUE(has(r.err, bad.message)) << r.err;
    EXPECT_TRUE(has(r.err, "nothing was imported")) << r.err;
    EXPECT_EQ(snapshot(db()), files) << "a refused import changed the directory";
    EXPECT_EQ(rowsOf("CLIENTES"), before);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ZqBadInput,
    ::testing::Values(
        BadFile{"WrongColumnCount", "a.csv", std::string(kHeader) + "1,Ana,1,2020-01-01,T,\n2,Bia,2,2020-01-02\n",
                "a.csv: line 3: 4 values, the header has 6"},
        BadFile{"TextTooLong", "b.csv", std::string(kHeader) + "1,Um nome longo demais para o campo,1,,T,\n",
                "b.csv: line 2, column NOME: a text of 33 characters is longer than the field's 20"},
        BadFile{"MalformedDate", "c.csv", std::string(kHeader) + "1,Ana,1,2020-01-01,T,\n2,Bia,2,2021-02-30,F,\n",
                "c.csv: line 3, column NASC: \"2021-02-30\" is not a date"},
        BadFile{"NotANumber", "d.csv", std::string(kHeader) + "1,\"Ana\nem duas linhas\",1,,T,\n2,Bia,dois,,F,\n",
                "d.csv: line 4, column SALDO: \"dois\" is not a number"},
        BadFile{"UnknownColumn", "e.csv", "CODIGO,APELIDO\n1,x\n", "column APELIDO is not a field of CLIENTES"},
        BadFile{"UnclosedQuote", "f.csv", std::string(kHeader) + "1,\"Ana,1,,T,\n", "f.csv: line 2:"},
        BadFile{"NotLatin1", "g.csv", std::string(kHeader) + "1,\xE2\x82\xAC uro,1,,T,\n",
                "g.csv: line 2, column NOME: the text has characters outside Latin-1"},
        BadFile{"DbfCutMidRecord", "h.dbf", "@DBF-CUT", "h.dbf: record 3 of 4 cannot be read: the file is cut short"}),
    [](const ::testing::TestParamInfo<BadFile> &info) { return std::string(info.param.name); });

TEST_F(ZqTest, ImportMakesATableOnlyWithCreate) {
    makeClients();
    writeFile(file("x.csv"), "A\n1\n");
    ToolRun r = zq({"import", db(), "NOVA", file("x.csv")});
    EXPECT_EQ(r.status, 2);
    EXPECT_TRUE(has(r.err, "no table NOVA (--create makes it from the file)")) << r.err;
    EXPECT_EQ(zq({"import", db(), "NOVA", file("x.csv"), "--create", "--struct", "A:N:5:1"}).status, 0);
    EXPECT_EQ(rowsOf("NOVA"), std::vector<std::string>{"1.0000"});
}

} // namespace
} // namespace zq::tool_test
