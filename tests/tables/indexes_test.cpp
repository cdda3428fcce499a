// Indexes: key expressions, the index file's bytes, keeping entries current, seek and order.
#include "support/table_fixture.h"

#include "tables/index_keys.h"

#include <cstring>

using namespace zq::table_test;
using zq::storage_test::readU32;

namespace {

class IndexTest : public TableTest {
protected:
    void SetUp() override {
        TableTest::SetUp();
        createAndUse("people", {{"code", "C", 4, 0}, {"name", "C", 6, 0}, {"age", "N", 3, 0}, {"memo", "M", 4, 0}});
    }
    static void addRow(const char *code, const char *name, double age) {
        __DBAPPEND(nullptr);
        __SetField(nullptr, num(1), text(code));
        __SetField(nullptr, num(2), text(name));
        __SetField(nullptr, num(3), num(age));
        __Commit(nullptr);
    }
    static std::string code() { return textOf(__GetFieldByID(nullptr, num(1))); }
    // The entries of an index file as "record:key" texts, in file order.
    std::vector<std::string> entries(const char *index, uint32_t keyBytes) {
        std::vector<std::string> out;
        for (const auto &[record, key] : indexEntries(index, keyBytes))
            out.push_back(std::to_string(record) + ":" + key);
        return out;
    }
    // Codes of the rows in the current order from the top.
    static std::string walk() {
        std::string codes;
        for (__TBL_GoTop(nullptr); !isTrue(__TBL_Eof(nullptr)); __TBL_Skip(nullptr, nullptr))
            codes += code() + ",";
        return codes;
    }
};

TEST(KeyExpression, NamesTheFieldsItsPartsLeave) {
    struct Case {
        const char *expression;
        std::vector<std::string> names;
    } cases[] = {
        {"code", {"CODE"}},
        {"  Code + name ", {"CODE", "NAME"}},
        {"people->code", {"CODE"}},
        {"P-> NAME+STR(AGE)", {"NAME", "AGE"}},
        {"STR(VALOR,10,2)", {"VALOR102"}},
        {"DTOS(BORN)+CODE", {"BORN", "CODE"}},
        {"STR(", {"STR"}},
        {"UPPER(NAME)", {"UPPERNAME"}},
        {"   ", {}},
        {"", {}},
    };
    for (const Case &c : cases)
        EXPECT_EQ(zq::tables::keyFieldNames(c.expression), c.names) << c.expression;
}

TEST(KeyExpression, RecordedLengthFollowsTheTypeRules) {
    using namespace zq::tables;
    TableDef def;
    for (auto [type, length] : {std::pair{kNumeric, 5}, {kDate, 8}, {kCharacter, 10}, {kLogical, 1}, {kMemo, 4},
                                {kBinary, 3}, {kInteger, 9}})
        def.fields.push_back(FieldDef{"F", type, length, 0, 0, 0});
    struct Case {
        std::vector<int32_t> parts;
        uint32_t length;
    } cases[] = {
        {{1}, 8}, {{2}, 8}, {{3}, 10}, {{4}, 1}, {{3, 4}, 21}, {{1, 4}, 17}, {{5}, 4}, {{6}, 3}, {{7}, 4}, {{3, 1, 2}, 26},
    };
    for (const Case &c : cases)
        EXPECT_EQ(recordedKeyLength(def, c.parts), c.length) << c.parts.size() << " parts from " << c.parts[0];
}

TEST_F(IndexTest, IndexFileHoldsSortedEntriesAndItsDefinitionBlock) {
    addRow("C", "carla", 30);
    addRow("A", "ana", 7);
    addRow("B", "bruno", 123);
    ASSERT_TRUE(isTrue(__DBCREATEINDEX(text("byage"), text("STR(AGE)+CODE"), __INIT_NUL())));
    // AGE counts 8 in the recorded length while its key is 3 characters wide.
    EXPECT_EQ(entries("BYAGE", 12),
              (std::vector<std::string>{"1:  7A   " + std::string(5, '\0'), "0: 30C   " + std::string(5, '\0'),
                                        "2:123B   " + std::string(5, '\0')}));
    std::vector<uint8_t> bytes = fileBytes("BYAGE");
    uint32_t appInfo = readU32(bytes, 4);
    std::string block(reinterpret_cast<const char *>(&bytes[20 + 72]), appInfo - 72);
    EXPECT_EQ(block, std::string("BYAGE\0" "2\0" "12\0" "2\0" "0\0", 15));
    std::vector<uint8_t> table = fileBytes("PEOPLE");
    std::string tableBlock(reinterpret_cast<const char *>(&table[20 + 72]), readU32(table, 4) - 72);
    EXPECT_NE(tableBlock.find(std::string("\0BYAGE\0", 7)), std::string::npos);
    EXPECT_EQ(numberOf(__IndexOrd(nullptr)), 1);
    EXPECT_EQ(textOf(__IndexKey(nullptr, nullptr)), "AGE+CODE");
    EXPECT_EQ(walk(), "A   ,C   ,B   ,");
    // A lookup by entry compares no further than the key area, however long a key it is given.
    DmOpenRef index = DmOpenDatabase(0, DmFindDatabase(0, "BYAGE"));
    std::string entry = std::string("\1\0\0\0", 4) + "  7A   " + std::string(300, '\0');
    int32_t position = -1;
    EXPECT_EQ(FindKeyInIndexFile(index, entry.data(), 300, &position), 1);
    EXPECT_EQ(position, 0);
    EXPECT_EQ(FindRecnoInIndexFile(index, 2, &position), 1);
    EXPECT_EQ(position, 2);
}

// Appended rows' entries wait outside the file until the index is read or committed, and
// then go in together: after every equal key already there, equal keys in the order they came.
TEST_F(IndexTest, HeldEntriesMergeAfterEqualKeysInTheOrderTheyCame) {
    __DBCREATEINDEX(text("bycode"), text("code"), __INIT_NUL());
    addRow("K", "first", 1);
    addRow("C", "c", 2);
    for (const char *c : {"K", "A", "K", "Z", "C"}) { // stored by the next append, not committed
        __DBAPPEND(nullptr);
        __SetField(nullptr, num(1), text(c));
    }
    __TBL_GoTo(nullptr, num(7)); // the last row stored too
    auto fileCount = [&] { return readU32(fileBytes("BYCODE"), 8); };
    EXPECT_EQ(fileCount(), 2u); // out of step with the table's 7 rows until the merge
    __TBL_SetOrder(nullptr, num(1));
    ASSERT_TRUE(isTrue(__Seek(nullptr, text("Z"), nullptr))); // a read merges first
    EXPECT_EQ(numberOf(__TBL_RecNo(nullptr)), 6);
    EXPECT_EQ(fileCount(), 7u);
    EXPECT_EQ(entries("BYCODE", 4), (std::vector<std::string>{"3:A   ", "1:C   ", "6:C   ", "0:K   ", "2:K   ",
                                                              "4:K   ", "5:Z   "}));
    __DBAPPEND(nullptr);
    __SetField(nullptr, num(1), text("B"));
    __dbCloseAll(); // closing merges too
    EXPECT_EQ(fileCount(), 8u);
    use("people");
    __TBL_SetOrder(nullptr, num(1));
    EXPECT_EQ(walk(), "A   ,B   ,C   ,C   ,K   ,K   ,K   ,Z   ,");
}

TEST_F(IndexTest, SeekFindsExactPrefixAndSoftPositions) {
    for (const char *c : {"BB", "AB", "BA", "CA", "BA"})
        addRow(c, c, 0);
    __DBCREATEINDEX(text("bycode"), text("code"), __INIT_NUL());
    struct Case {
        const char *key;
        bool soft, found, eof;
        double recno;
    } cases[] = { // misses, soft or not, are left to the random model test
        {"BA", false, true, false, 3},  // the first of two equal keys
        {"B", false, true, false, 3},   // a prefix finds the first key beginning with it
        {"BB  ", false, true, false, 1},
        {"A", true, true, false, 2},
        {"", false, true, false, 2},    // an empty key matches the first entry
    };
    for (const Case &c : cases) {
        bool result = isTrue(__Seek(nullptr, text(c.key), __INIT_BOOL(c.soft)));
        EXPECT_EQ(result, c.found) << c.key;
        EXPECT_EQ(isTrue(__TBL_Found(nullptr)), c.found) << c.key;
        EXPECT_EQ(isTrue(__TBL_Eof(nullptr)), c.eof) << c.key;
        EXPECT_EQ(numberOf(__TBL_RecNo(nullptr)), c.recno) << c.key;
    }
    __Seek(nullptr, text("BA"), nullptr);
    __TBL_Skip(nullptr, nullptr);
    EXPECT_EQ(numberOf(__TBL_RecNo(nullptr)), 5); // then the other equal key
}

TEST_F(IndexTest, SeekPassesOverDeletedRowsWithinTheKey) {
    for (const char *c : {"K", "K", "L"})
        addRow(c, c, 0);
    __DBCREATEINDEX(text("bycode"), text("code"), __INIT_NUL());
    __TBL_GoTo(nullptr, num(1));
    __TBL_Delete(nullptr);
    __Commit(nullptr);
    __Set(num(11), __INIT_BOOL(1));
    EXPECT_TRUE(isTrue(__Seek(nullptr, text("K"), nullptr)));
    EXPECT_EQ(numberOf(__TBL_RecNo(nullptr)), 2);
    __TBL_GoTo(nullptr, num(2));
    __TBL_Delete(nullptr);
    __Commit(nullptr);
    EXPECT_FALSE(isTrue(__Seek(nullptr, text("K"), nullptr)));
    EXPECT_TRUE(isTrue(__TBL_Eof(nullptr)));
    __Set(num(11), __INIT_BOOL(0));
    EXPECT_TRUE(isTrue(__Seek(nullptr, text("K"), nullptr)));
    EXPECT_EQ(numberOf(__TBL_RecNo(nullptr)), 1);
}

TEST_F(IndexTest, SwitchingOrderKeepsTheCurrentRow) {
    addRow("B", "zed", 0);
    addRow("A", "yan", 0);
    addRow("C", "xia", 0);
    __DBCREATEINDEX(text("bycode"), text("code"), __INIT_NUL());
    __DBCREATEINDEX(text("byname"), text("name"), __INIT_NUL());
    EXPECT_EQ(walk(), "C   ,A   ,B   ,");
    __Seek(nullptr, text("yan"), nullptr);
    __TBL_SetOrder(nullptr, num(1));
    EXPECT_EQ(code(), "A   ");
    EXPECT_EQ(numberOf(__IndexOrd(nullptr)), 1);
    __TBL_Skip(nullptr, nullptr); // in code order now
    EXPECT_EQ(code(), "B   ");
    __ClearIndex(nullptr);
    EXPECT_EQ(numberOf(__IndexOrd(nullptr)), 0);
    EXPECT_EQ(walk(), "B   ,A   ,C   ,");
    EXPECT_EQ(numberOf(__GetIdxInd(nullptr, text("byname"))), 2);
    EXPECT_EQ(numberOf(__GetIdxInd(nullptr, text("other"))), 0);
}

TEST_F(IndexTest, IndexesReopenWithTheTableAndOutOfStepOnesAreRebuilt) {
    for (const char *c : {"Q", "P", "R"})
        addRow(c, c, 0);
    __DBCREATEINDEX(text("bycode"), text("code"), __INIT_NUL());
    __CloseAllIdx(nullptr);
    EXPECT_EQ(numberOf(__GetFirstOpenIDX(nullptr)), 0);
    // Rows stored while the index is closed leave it out of step.
    addRow("A", "a", 0);
    ASSERT_EQ(entries("BYCODE", 4).size(), 3u);
    EXPECT_TRUE(isTrue(__UseIndex(nullptr, text("bycode"))));
    EXPECT_EQ(entries("BYCODE", 4), (std::vector<std::string>{"3:A   ", "1:P   ", "0:Q   ", "2:R   "}));
    EXPECT_EQ(numberOf(__GetFirstOpenIDX(nullptr)), 1);
    __dbCloseAll();
    use("people");
    EXPECT_EQ(numberOf(__IndexOrd(nullptr)), 0);
    __TBL_SetOrder(nullptr, num(1));
    EXPECT_TRUE(isTrue(__Seek(nullptr, text("R"), nullptr)));
    EXPECT_EQ(numberOf(__TBL_RecNo(nullptr)), 3);
}

TEST_F(IndexTest, ZapKeepsDefinitionsAndDropCountsDownWhateverTheName) {
    addRow("A", "a", 0);
    __DBCREATEINDEX(text("bycode"), text("code"), __INIT_NUL());
    __DBCREATEINDEX(text("byname"), text("name"), __INIT_NUL());
    __dbZap(nullptr);
    EXPECT_EQ(numberOf(__TBL_RecCount(nullptr)), 0);
    EXPECT_TRUE(isTrue(__TBL_Eof(nullptr)) && isTrue(__TBL_Bof(nullptr)));
    EXPECT_TRUE(entries("BYNAME", 6).empty());
    addRow("B", "b", 0);
    __TBL_SetOrder(nullptr, num(1));
    EXPECT_TRUE(isTrue(__Seek(nullptr, text("B"), nullptr)));
    // A database not among the indexes: it goes, and so does the last index of the list.
    DmCreateDatabase(0, "STRAY", 0x5A454C51u, 0x494E4458u, 0);
    __DBDROPINDEX(nullptr, text("stray"));
    EXPECT_FALSE(isTrue(__File(text("stray"))));
    EXPECT_TRUE(isTrue(__File(text("byname")))); // its database stays
    EXPECT_EQ(textOf(__IndexKey(nullptr, num(1))), "CODE");
    EXPECT_EQ(textOf(__IndexKey(nullptr, num(2))), "");
    EXPECT_FALSE(isTrue(__DBDROPINDEX(nullptr, text("nothing"))));
    __DBDROPINDEX(nullptr, text("bycode"));
    EXPECT_FALSE(isTrue(__File(text("bycode"))));
    // None left: the count stored is 65535, read back as no indexes.
    __DBDROPINDEX(nullptr, text("byname"));
    std::vector<uint8_t> table = fileBytes("PEOPLE");
    std::string block(reinterpret_cast<const char *>(&table[20 + 72]), readU32(table, 4) - 72);
    EXPECT_EQ(block.substr(0, 15), std::string("PEOPLE\0" "5\0" "65535\0", 15));
    __dbCloseAll();
    use("people");
    EXPECT_EQ(numberOf(__TBL_RecCount(nullptr)), 1);
}

TEST_F(IndexTest, PackRemovesDeletedRowsResetsMemoReferencesAndReindexes) {
    for (const char *c : {"D", "C", "B", "A"})
        addRow(c, c, 0);
    __TBL_GoTo(nullptr, num(4));
    __SetField(nullptr, num(4), text("a memo"));
    __Commit(nullptr);
    __DBCREATEINDEX(text("bycode"), text("code"), __INIT_NUL());
    for (double recno : {1, 3}) {
        __TBL_GoTo(nullptr, num(recno));
        __TBL_Delete(nullptr);
        __Commit(nullptr);
    }
    __dbPack(nullptr);
    EXPECT_EQ(numberOf(__TBL_RecCount(nullptr)), 2);
    EXPECT_EQ(code(), "A   "); // at the top of the order
    EXPECT_EQ(textOf(__GetFieldByID(nullptr, num(4))), "");
    for (double recno : {1, 2}) {
        __TBL_GoTo(nullptr, num(recno));
        __TBL_Delete(nullptr);
    }
    __dbPack(nullptr);
    EXPECT_TRUE(isTrue(__TBL_Eof(nullptr)) && isTrue(__TBL_Bof(nullptr)));
    EXPECT_TRUE(entries("BYCODE", 4).empty());
}

TEST_F(IndexTest, DeletingAClosedTableOpensItUnderItsNameAndRemovesItsIndexes) {
    addRow("A", "a", 0);
    __DBCREATEINDEX(text("bycode"), text("code"), __INIT_NUL());
    __dbCloseAll();
    EXPECT_EQ(__TBL_DeleteDatabase(text("PEOPLE")), 0);
    EXPECT_FALSE(isTrue(__File(text("people"))));
    EXPECT_FALSE(isTrue(__File(text("bycode"))));
    EXPECT_TRUE(isTrue(__File(text("people_m")))); // the memo companion is left
    EXPECT_EQ(__TBL_DeleteDatabase(text("PEOPLE")), 0);
    EXPECT_EQ(__GetAliasID(text("PEOPLE")), -1);
}

} // namespace
