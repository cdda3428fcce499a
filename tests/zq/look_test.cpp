// zq ls, struct and show, --help and the exit statuses of bad usage.
#include "zq/support/zq_fixture.h"

#include <filesystem>
#include <regex>

namespace zq::tool_test {
namespace {

TEST_F(ZqTest, LsListsDatabasesTablesUnknownFilesAndLostEntries) {
    makeClients();
    ToolRun clean = zq({"ls", db()});
    EXPECT_EQ(clean.status, 0) << clean.err;
    EXPECT_TRUE(has(clean.out, "CLIENTES_M                      MEMO ZELQ           5      15360")) << clean.out;
    EXPECT_TRUE(has(clean.out, "CLI_NOME                        INDX ZELQ           5")) << clean.out;
    EXPECT_TRUE(has(clean.out, "CLIENTES                          6 fields   2 indexes  memo")) << clean.out;
    EXPECT_FALSE(has(clean.out, "DOES NOT KNOW")) << clean.out;

    writeFile(db() + "/stray.txt", "x");
    std::filesystem::remove(db() + "/CLI_COD");
    ToolRun damaged = zq({"ls", db()});
    EXPECT_EQ(damaged.status, 1);
    EXPECT_TRUE(has(damaged.out, "FILES THE CATALOG DOES NOT KNOW\nstray.txt\n")) << damaged.out;
    EXPECT_TRUE(has(damaged.out, "CATALOG ENTRIES WITHOUT THEIR FILE\nCLI_COD\n")) << damaged.out;
}

TEST_F(ZqTest, StructShowsFieldsAndIndexKeys) {
    makeClients();
    ToolRun r = zq({"struct", db(), "clientes"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(has(r.out, "TABLE CLIENTES  6 fields  5 records")) << r.out;
    EXPECT_TRUE(has(r.out, "  3  SALDO                   N        10    2\n")) << r.out;
    EXPECT_TRUE(has(r.out, "  6  OBS                     M         4    0\n")) << r.out;
    EXPECT_TRUE(has(r.out, "CLI_COD                         CODIGO                                   8\n")) << r.out;
}

TEST_F(ZqTest, ShowPrintsRowsInNaturalOrIndexOrderWithLatin1AsUtf8) {
    makeClients();
    auto files = snapshot(db());
    ToolRun natural = zq({"show", db(), "CLIENTES"});
    EXPECT_EQ(natural.status, 0) << natural.err;
    EXPECT_TRUE(has(natural.out, "1       1  José da Silva     1250.50  1980-02-29  T      Cliente antigo. Paga em dia; à vista.\n"))
        << natural.out;
    EXPECT_FALSE(has(natural.out, "Apagado")) << natural.out;
    EXPECT_TRUE(has(natural.out, "(4 rows)")) << natural.out;

    ToolRun deleted = zq({"show", db(), "CLIENTES", "--deleted", "--limit", "4"});
    EXPECT_TRUE(has(deleted.out, "linha removida                         *\n")) << deleted.out;
    EXPECT_TRUE(has(deleted.out, "(4 rows)")) << deleted.out;

    // "", Conceição, José, Ágata: by their bytes
    ToolRun ordered = zq({"show", db(), "CLIENTES", "--order", "cli_nome"});
    EXPECT_TRUE(std::regex_search(ordered.out, std::regex("\n3 [^\n]*\n2 [^\n]*\n1 [^\n]*\n5 "))) << ordered.out;
    EXPECT_EQ(snapshot(db()), files) << "looking changed the directory";
}

struct UsageCase {
    const char *name;
    std::vector<std::string> args; // "@DB" stands for the storage directory
    int status;
    const char *message; // in standard error, or in standard output for --help
};

void PrintTo(const UsageCase &c, std::ostream *os) { *os << c.name; } // as the test's name

class ZqUsage : public ZqTest, public ::testing::WithParamInterface<UsageCase> {};

TEST_P(ZqUsage, ExitStatusAndMessage) {
    makeClients();
    std::filesystem::create_directories(file("empty"));
    std::vector<std::string> args;
    for (const std::string &a : GetParam().args)
        args.push_back(a == "@DB" ? db() : a == "@EMPTY" ? file("empty") : a);
    ToolRun r = zq(args);
    EXPECT_EQ(r.status, GetParam().status) << r.out << r.err;
    EXPECT_TRUE(has(r.out + r.err, GetParam().message)) << r.out << r.err;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ZqUsage,
    ::testing::Values(
        UsageCase{"NoCommand", {}, 2, "A subcommand is required"},
        UsageCase{"UnknownCommand", {"frobnicate", "@DB"}, 2, "unknown command \"frobnicate\""},
        UsageCase{"MissingTable", {"show", "@DB"}, 2, "TABLE is required"},
        UsageCase{"NotAStorageDirectory", {"ls", "@EMPTY"}, 2, "not a storage directory (no catalog.plm)"},
        UsageCase{"NoSuchDirectory", {"check", "/nonexistent/DB"}, 2, "/nonexistent/DB: no such directory"},
        UsageCase{"NoSuchTable", {"show", "@DB", "NADA"}, 2, "no table NADA"},
        UsageCase{"NoSuchIndex", {"show", "@DB", "CLIENTES", "--order", "NADA"}, 2, "has no index NADA"},
        UsageCase{"UnknownExportFormat", {"export", "@DB", "CLIENTES", "x.ods"}, 2, "must end in .csv, .dbf or .xlsx"},
        UsageCase{"StructWithoutCreate", {"import", "@DB", "CLIENTES", "x.csv", "--struct", "A:C:2"}, 2,
                  "--struct goes with --create"},
        UsageCase{"Help", {"--help"}, 0, "Subcommands:"},
        UsageCase{"HelpOfShow", {"show", "--help"}, 0, "--order"},
        UsageCase{"HelpOfImport", {"import", "--help"}, 0, "--create"},
        UsageCase{"HelpOfRepair", {"repair", "--help"}, 0, "Back the directory up"}),
    [](const ::testing::TestParamInfo<UsageCase> &info) { return std::string(info.param.name); });

} // namespace
} // namespace zq::tool_test
