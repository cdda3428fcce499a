// zq check finds each kind of damage without changing a byte; zq repair backs the
// directory up, mends it and leaves check clean with the rows kept.
#include "zq/support/zq_fixture.h"

#include <filesystem>

namespace zq::tool_test {
namespace {

uint16_t u16At(const std::vector<uint8_t> &b, size_t at) { return uint16_t(b[at] | b[at + 1] << 8); }

struct Damage {
    const char *name;
    void (*make)(ZqTest &t);
    const char *found;   // a line check prints
    int emptiedMemoRow;  // 1-based row whose memo repair empties, 0 for none
};

void flipKeyByte(ZqTest &t) {
    auto b = t.bytesOf("CLI_NOME");
    b[t.recordOffsets("CLI_NOME")[1] + 8 + 4] ^= 0x20;
    t.replaceBytes("CLI_NOME", b);
}

void removeIndexEntry(ZqTest &) {
    DmOpenRef index = DmOpenDatabase(0, DmFindDatabase(0, "CLI_COD"));
    ASSERT_NE(index, nullptr);
    EXPECT_EQ(DmRemoveRecord(index, 0), 0);
    DmCloseDatabase(index);
    StorageClose();
}

void truncateOffsetIndex(ZqTest &t) {
    auto b = t.bytesOf("CLIENTES_OS");
    b.resize(28);
    t.replaceBytes("CLIENTES_OS", b);
}

void memoPastTheEnd(ZqTest &t) {
    auto b = t.bytesOf("CLIENTES");
    size_t row3 = t.recordOffsets("CLIENTES")[2] + 8;
    b[row3 + 8 + 1 + 8 + 8 + 1] = 99; // CODIGO, the empty NOME, SALDO, NASC, ATIVO, then OBS
    t.replaceBytes("CLIENTES", b);
}

void rowWithoutMark(ZqTest &t) {
    auto b = t.bytesOf("CLIENTES");
    size_t row2 = t.recordOffsets("CLIENTES")[1];
    b[row2 + 8 + u16At(b, row2) - 2] = 0;
    t.replaceBytes("CLIENTES", b);
}

class ZqDamage : public ZqTest, public ::testing::WithParamInterface<Damage> {};

TEST_P(ZqDamage, CheckFindsItAndRepairMendsIt) {
    makeClients();
    std::vector<std::string> rows = rowsOf("CLIENTES");
    GetParam().make(*this);
    auto damaged = snapshot(db());

    ToolRun check = zq({"check", db()});
    EXPECT_EQ(check.status, 1) << check.out;
    EXPECT_TRUE(has(check.out, GetParam().found)) << check.out;
    EXPECT_EQ(snapshot(db()), damaged) << "check changed the directory";

    ToolRun repair = zq({"repair", db()});
    EXPECT_EQ(repair.status, 0) << repair.out << repair.err;
    EXPECT_TRUE(has(repair.out, "check after repair: 0 problems found")) << repair.out;
    std::string backup;
    for (const auto &e : std::filesystem::directory_iterator(directory))
        if (e.path().filename().string().rfind("DB.backup-", 0) == 0)
            backup = e.path().string();
    ASSERT_FALSE(backup.empty()) << repair.out;
    EXPECT_TRUE(has(repair.out, "backup: " + backup)) << repair.out;
    EXPECT_EQ(snapshot(backup), damaged) << "the backup is not the directory as it was";

    EXPECT_EQ(zq({"check", db()}).status, 0);
    if (int r = GetParam().emptiedMemoRow)
        rows[size_t(r) - 1].erase(rows[size_t(r) - 1].rfind('|') + 1);
    EXPECT_EQ(rowsOf("CLIENTES"), rows);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ZqDamage,
    ::testing::Values(
        Damage{"FlippedKeyByte", flipKeyByte, "CLI_NOME: entry 2: its key bytes differ from the key of row 4\n", 0},
        Damage{"MissingIndexEntry", removeIndexEntry,
               "CLI_COD: entries: holds 4 entries for 5 rows (out of step)\nCLI_COD: row 1: has no entry\n", 0},
        Damage{"TruncatedOffsetIndex", truncateOffsetIndex, "CLIENTES_OS: size: cut short: holds 2 of 5 entries\n",
               0},
        Damage{"MemoPastTheEnd", memoPastTheEnd,
               "CLIENTES: row 3, field OBS: memo reference 99 lies past the end of CLIENTES_M", 3},
        Damage{"RowWithoutMark", rowWithoutMark, "CLIENTES: row 2: the row has no deletion mark\n", 0}),
    [](const ::testing::TestParamInfo<Damage> &info) { return std::string(info.param.name); });

TEST_F(ZqTest, CleanDirectoryNeedsNoRepairAndNoBackup) {
    makeClients();
    ToolRun check = zq({"check", db(), "CLIENTES"});
    EXPECT_EQ(check.status, 0);
    EXPECT_EQ(check.out, "0 problems found\n");
    ToolRun repair = zq({"repair", db()});
    EXPECT_EQ(repair.status, 0);
    EXPECT_EQ(repair.out, "nothing to repair: 0 problems found\n");
    for (const auto &e : std::filesystem::directory_iterator(directory))
        EXPECT_EQ(e.path().filename().string().find("backup"), std::string::npos);
}

TEST_F(ZqTest, CheckNamesATableThatDoesNotExist) {
    makeClients();
    ToolRun check = zq({"check", db(), "NADA"});
    EXPECT_EQ(check.status, 1);
    EXPECT_EQ(check.out, "NADA: catalog: no table of this name\n1 problem found\n");
}

} // namespace
} // namespace zq::tool_test
