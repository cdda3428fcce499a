// zq check finds each kind of damage without changing a byte; zq repair backs the
// directory up, mends it and leaves check clean with the rows kept.
#include "zq/support/zq_fixture.h"

#include <filesystem>

namespace zq::tool_test {
namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<uint8_t>;

using storage_test::readU32;
void putU32(Bytes &b, size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i)
        b[at + i] = uint8_t(v >> 8 * i);
}

// Fills the app info block of a database (from skip on) with bytes no definition parses.
void garbleDefinition(ZqTest &t, const char *database, size_t skip) {
    t.patch(database, [&](Bytes &b) { std::fill(b.begin() + 20 + skip, b.begin() + 20 + readU32(b, 4), 'x'); });
}

// Records appended and removed again through storage leave the table's file grown.
void removalsLeaveRoom(ZqTest &) {
    DmOpenRef table = DmOpenDatabase(0, DmFindDatabase(0, "CLIENTES"));
    ASSERT_NE(table, nullptr);
    for (int i = 0; i < 1000; ++i) {
        uint32_t at = dmAppendPosition;
        ASSERT_NE(DmNewRecord(table, &at, 200), nullptr);
        DmReleaseRecord(table, at, 1);
    }
    while (DmNumRecords(table) > 5)
        DmRemoveRecord(table, 5);
    DmCloseDatabase(table);
    StorageClose();
}

struct Damage {
    const char *name;
    void (*make)(ZqTest &t);
    const char *found;      // a line check prints
    const char *emptied;    // 1-based rows (digits) whose memo text repair empties
    bool tableGone = false; // repair drops the table's catalog entry
    const char *mended = "";  // a line repair prints, when it matters which mend it chose
};

void PrintTo(const Damage &c, std::ostream *os) { *os << c.name; } // as the test's name

class ZqDamage : public ZqTest, public ::testing::WithParamInterface<Damage> {};

TEST_P(ZqDamage, CheckFindsItAndRepairMendsIt) {
    makeClients();
    std::vector<std::string> rows = rowsOf("CLIENTES");
    GetParam().make(*this);
    auto damaged = snapshot(db());

    ToolRun check = zq({"check", db()});
    EXPECT_EQ(check.status, has(GetParam().found, "(note)") ? 0 : 1) << check.out; // a note is no fault
    EXPECT_TRUE(has(check.out, GetParam().found)) << check.out;
    EXPECT_EQ(snapshot(db()), damaged) << "check changed the directory";

    ToolRun repair = zq({"repair", db()});
    EXPECT_EQ(repair.status, 0) << repair.out << repair.err;
    EXPECT_TRUE(has(repair.out, "check after repair: 0 problems found")) << repair.out;
    EXPECT_TRUE(has(repair.out, GetParam().mended)) << repair.out;
    std::string backup;
    for (const auto &e : fs::directory_iterator(directory))
        if (e.path().filename().string().rfind("DB.backup-", 0) == 0)
            backup = e.path().string();
    ASSERT_FALSE(backup.empty()) << repair.out;
    EXPECT_TRUE(has(repair.out, "backup: " + backup)) << repair.out;
    EXPECT_EQ(snapshot(backup), damaged) << "the backup is not the directory as it was";

    ToolRun after = zq({"check", db()});
    EXPECT_EQ(after.status, 0) << after.out;
    EXPECT_FALSE(has(after.out, GetParam().found)) << after.out;
    if (GetParam().tableGone) {
        EXPECT_TRUE(has(zq({"ls", db()}).out, "CLIENTES_M ")) << "the table's companions are kept";
        return;
    }
    for (const char *r = GetParam().emptied; *r; ++r)
        rows[size_t(*r - '1')].erase(rows[size_t(*r - '1')].rfind('|') + 1);
    EXPECT_EQ(rowsOf("CLIENTES"), rows) << repair.out;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ZqDamage,
    ::testing::Values(
        Damage{"FlippedKeyByte",
               [](ZqTest &t) {
                   size_t entry2 = t.recordOffsets("CLI_NOME")[1];
                   t.patch("CLI_NOME", [&](Bytes &b) { b[entry2 + 12] ^= 0x20; });
               },
               "CLI_NOME: entry 2: its key bytes differ from the key of row 4\n", ""},
        Damage{"MissingIndexEntry",
               [](ZqTest &) {
                   DmOpenRef index = DmOpenDatabase(0, DmFindDatabase(0, "CLI_COD"));
                   EXPECT_EQ(DmRemoveRecord(index, 0), 0);
                   DmCloseDatabase(index);
                   StorageClose();
               },
               "CLI_COD: entries: holds 4 entries for 5 rows (out of step)\nCLI_COD: row 1: has no entry\n", ""},
        Damage{"TruncatedOffsetIndex", [](ZqTest &t) { t.patch("CLIENTES_OS", [](Bytes &b) { b.resize(28); }); },
               "CLIENTES_OS: size: cut short: holds 2 of 5 entries\n", ""},
        Damage{"MemoPastTheEnd", // row 3's CODIGO, empty NOME, SALDO, NASC, ATIVO, then OBS
               [](ZqTest &t) { t.patch("CLIENTES", [&](Bytes &b) { b[t.recordOffsets("CLIENTES")[2] + 34] = 99; }); },
               "CLIENTES: row 3, field OBS: memo reference 99 lies past the end of CLIENTES_M", "3"},
        Damage{"RowWithoutMark",
               [](ZqTest &t) {
                   size_t row2 = t.recordOffsets("CLIENTES")[1];
                   t.patch("CLIENTES", [&](Bytes &b) { b[row2 + 8 + (b[row2] | b[row2 + 1] << 8) - 2] = 0; });
               },
               "CLIENTES: row 2: the row has no deletion mark\n", ""},
        Damage{"RoomLeftByRemovals", removalsLeaveRoom, "bytes are unused (a compaction drops them) (note)\n", ""},
        Damage{"StaleWorkFile",
               [](ZqTest &t) { writeFile(t.inDb("CLIENTES_Temp"), readFile(t.inDb("CLIENTES")).substr(0, 200)); },
               "CLIENTES_Temp: file: a compaction work file left behind by an interrupted compaction\n", ""},
        Damage{"CompactionCutBeforeRename", [](ZqTest &t) { fs::rename(t.inDb("CLIENTES"), t.inDb("CLIENTES_Temp")); },
               "CLIENTES: file: missing; CLIENTES_Temp, the complete copy an interrupted compaction made, takes "
               "its place\n",
               ""},
        Damage{"MissingMemoFile", [](ZqTest &t) { fs::remove(t.inDb("CLIENTES_M")); },
               "CLIENTES_M: file: the catalog lists it but its file is missing\n", "12345"},
        Damage{"IndexEntryLost", // a file holding entries is entered again when storage starts
               [](ZqTest &t) { t.patch("catalog.plm", [](Bytes &b) { std::fill_n(b.begin() + 284, 88, 0); }); },
               "CLI_COD: file: the table lists this index but the catalog does not\n", "", false,
               "CLI_COD: file: entered in the catalog again when storage started\n"},
        Damage{"MissingIndexFile", [](ZqTest &t) { fs::remove(t.inDb("CLI_COD")); },
               "CLI_COD: file: the catalog lists it but its file is missing\n", ""},
        Damage{"GarbledIndexDefinition", [](ZqTest &t) { garbleDefinition(t, "CLI_NOME", 0); },
               "CLI_NOME: definition: the index's definition block does not parse\n", ""},
        Damage{"MissingTableFile", [](ZqTest &t) { fs::remove(t.inDb("CLIENTES")); },
               "CLIENTES: file: the catalog lists it but its file is missing\n", "", true},
        Damage{"CatalogUsedSizeOffAnEntry",
               [](ZqTest &t) { t.patch("catalog.plm", [](Bytes &b) { putU32(b, 16, readU32(b, 16) - 3); }); },
               "catalog.plm: header: used size ", ""},
        Damage{"CatalogNameWithSlash", [](ZqTest &t) { t.patch("catalog.plm", [](Bytes &b) { b[22] = '/'; }); },
               "catalog.plm: entry at 20: its name holds the byte 47, which no file name may\n", ""},
        Damage{"CatalogCapacity", [](ZqTest &t) { t.patch("catalog.plm", [](Bytes &b) { putU32(b, 12, 4096); }); },
               "catalog.plm: header: capacity 4096, the file has ", ""},
        Damage{"CatalogEntryTwice", // CLI_NOME's entry (the third) copied behind the last one
               [](ZqTest &t) {
                   t.patch("catalog.plm", [](Bytes &b) {
                       std::copy(b.begin() + 196, b.begin() + 284, b.begin() + readU32(b, 16));
                       putU32(b, 16, readU32(b, 16) + 88);
                   });
               },
               "catalog.plm: entry at 372: names CLI_NOME again (the entry at 196 is the one found)\n", ""},
        Damage{"CatalogTypeGarbled",
               [](ZqTest &t) { t.patch("catalog.plm", [](Bytes &b) { putU32(b, 196 + 76, 0x58585858u); }); },
               "CLI_NOME: catalog entry: type XXXX is no type of a 'B' database\n", ""}),
    [](const ::testing::TestParamInfo<Damage> &info) { return std::string(info.param.name); });

TEST_F(ZqTest, CleanDirectoryNeedsNoRepairAndNoBackup) {
    makeClients();
    createAndUse("VAZIA", {{"CODIGO", "N", 6, 0}}); // made, never written to: a fresh offset index
    closeStorage();
    patch("VAZIA_OS", [](Bytes &b) { putU32(b, 16, 1); });
    ToolRun check = zq({"check", db(), "CLIENTES"});
    EXPECT_EQ(check.status, 0);
    EXPECT_EQ(check.out, "0 problems found\n");
    ToolRun repair = zq({"repair", db()});
    EXPECT_EQ(repair.status, 0);
    EXPECT_EQ(repair.out, "nothing to repair: 0 problems found\n");
    for (const auto &e : fs::directory_iterator(directory))
        EXPECT_EQ(e.path().filename().string().find("backup"), std::string::npos);
    EXPECT_EQ(zq({"check", db(), "NADA"}).out, "NADA: catalog: no table of this name\n1 problem found\n");
}

TEST_F(ZqTest, RepairLeavesATableWhoseDefinitionIsLostAsItIs) {
    makeClients();
    garbleDefinition(*this, "CLIENTES", 72);
    auto table = bytesOf("CLIENTES");
    ToolRun repair = zq({"repair", db()});
    EXPECT_EQ(repair.status, 1);
    EXPECT_TRUE(has(repair.out, "CLIENTES: definition: the table's definition block does not parse; without it the "
                                "rows cannot be read (restore the table from a backup): left as it is\n"))
        << repair.out;
    EXPECT_EQ(bytesOf("CLIENTES"), table);
}

// Compaction keeps the rows marked deleted unless --pack asks for them to go; the memo
// texts of the rows kept stay with them either way.
TEST_F(ZqTest, RepairPackDropsDeletedRowsOnlyWhenAsked) {
    makeClients();
    std::vector<std::string> rows = rowsOf("CLIENTES");
    removalsLeaveRoom(*this);
    EXPECT_EQ(zq({"repair", db()}).status, 0);
    EXPECT_EQ(rowsOf("CLIENTES"), rows);

    ToolRun pack = zq({"repair", db(), "--pack"});
    EXPECT_EQ(pack.status, 0) << pack.out << pack.err;
    EXPECT_TRUE(has(pack.out, "CLIENTES: compacted, 1 deleted rows dropped\n")) << pack.out;
    rows.erase(rows.begin() + 3);
    EXPECT_EQ(rowsOf("CLIENTES"), rows);
    EXPECT_EQ(zq({"repair", db(), "--pack"}).out, "nothing to repair: 0 problems found\n");
}

} // namespace
} // namespace zq::tool_test
