// Table creation: the definition block byte for byte, the structure array, replacement.
#include "support/table_fixture.h"

#include <cstring>

using namespace zq::table_test;
using zq::storage_test::readU32;

namespace {

class CreationTest : public TableTest {};

std::string piece(const char *s) { return std::string(s, std::strlen(s) + 1); }

TEST_F(CreationTest, DefinitionBlockIsStoredPieceByPiece) {
    ASSERT_TRUE(isTrue(__DBCREATE(text("stock"), structure({{"name", "c", 10, 0}, {"qty", "N", 8.9, 2.7},
                                                                 {"born", "D", 10, 0}, {"ok", "L", 1, 0},
                                                                 {"note", "M", 50, 0}}), nullptr)));
    std::vector<uint8_t> file = fileBytes("STOCK");
    uint32_t size = readU32(file, 4);
    std::string expected = piece("STOCK") + piece("6") + piece("0") +
                           piece("NAME") + piece("2") + piece("10") + piece("0") +
                           piece("QTY") + piece("0") + piece("8") + piece("2") +
                           piece("BORN") + piece("1") + piece("8") + piece("0") +
                           piece("OK") + piece("3") + piece("1") + piece("0") +
                           piece("NOTE") + piece("4") + piece("4") + piece("0") +
                           piece("D_E_L_E_T_") + piece("2") + piece("2") + piece("0");
    ASSERT_EQ(size, 72 + expected.size());
    EXPECT_EQ(std::string(file.begin() + 20 + 72, file.begin() + 20 + size), expected);
    // The descriptor copy: name, type 'DATA', mode 3, field and index counts.
    EXPECT_EQ(std::string(reinterpret_cast<char *>(&file[20 + 8])), "STOCK");
    EXPECT_EQ(std::string(file.begin() + 20 + 48, file.begin() + 20 + 52), "ATAD");
    EXPECT_EQ(readU32(file, 20 + 52), 3u);
    EXPECT_EQ(zq::storage_test::readU16(file, 20 + 56), 6u);
    EXPECT_EQ(zq::storage_test::readU16(file, 20 + 58), 0u);
    EXPECT_EQ(readU32(file, 8), 0u); // no rows
    EXPECT_TRUE(isTrue(__File(text("stock_m"))));
    EXPECT_FALSE(isTrue(__Used()));
}

// Each field reads back through the structure array and the field built-ins with its
// type letter (unknown letters are C) and its length (forced for D and M); the deletion
// field is left out.
TEST_F(CreationTest, FieldsReadBackWithTypeLettersAndForcedLengths) {
    createAndUse("kinds", {{"d", "D", 10, 0}, {"m", "memo", 80, 0}, {"i", "I", 4, 0}, {"b", "B", 6, 0},
                           {"x", "X", 7, 0}, {"l", "l", 3, 0}, {"only", "N", 5, 1}});
    struct Field {
        const char *name, *letter;
        double length, decimals;
    } fields[] = {{"D", "D", 8, 0}, {"M", "M", 4, 0}, {"I", "I", 4, 0}, {"B", "B", 6, 0},
                  {"X", "C", 7, 0}, {"L", "L", 3, 0}, {"ONLY", "N", 5, 1}};
    pObj s = __DBStruct(nullptr);
    ASSERT_EQ(__Array_Get_Amnt_Itens(s), 7);
    EXPECT_EQ(numberOf(__TBL_Fcount(nullptr)), 7);
    for (int i = 0; i < 7; ++i) {
        const Field &f = fields[i];
        pObj row = __GET_ARRAY_EL(s, i);
        EXPECT_EQ(textOf(__ARRAY_EL(row, num(1), __INIT_NUL())), f.name);
        EXPECT_EQ(textOf(__ARRAY_EL(row, num(2), __INIT_NUL())), f.letter) << f.name;
        EXPECT_EQ(numberOf(__ARRAY_EL(row, num(3), __INIT_NUL())), f.length) << f.name;
        EXPECT_EQ(numberOf(__ARRAY_EL(row, num(4), __INIT_NUL())), f.decimals) << f.name;
        EXPECT_EQ(textOf(__FieldType(nullptr, num(i + 1))), f.letter) << f.name;
        EXPECT_EQ(numberOf(__FieldLen(nullptr, num(i + 1))), f.length) << f.name;
    }
    EXPECT_FALSE(isTrue(__File(text(""))));
}

TEST_F(CreationTest, CreatingOverATableReplacesItAndItsMemo) {
    createAndUse("notes", {{"text", "M", 10, 0}});
    __DBAPPEND(nullptr);
    __SetField(nullptr, num(1), text("first"));
    __Commit(nullptr);
    ASSERT_EQ(numberOf(__TBL_RecCount(nullptr)), 1);
    ASSERT_TRUE(isTrue(__DBCREATE(text("Notes"), structure({{"code", "N", 4, 0}}), nullptr)));
    EXPECT_FALSE(isTrue(__File(text("notes_m"))));
    use("notes");
    EXPECT_EQ(numberOf(__TBL_RecCount(nullptr)), 0);
    EXPECT_EQ(textOf(__GetFieldName(nullptr, num(1))), "CODE");
}

TEST_F(CreationTest, CreationLeavesTheCurrentAreaAsItWas) {
    createAndUse("first", {{"a", "N", 3, 0}});
    ASSERT_TRUE(isTrue(__DBCREATE(text("second"), structure({{"b", "N", 3, 0}}), nullptr)));
    EXPECT_EQ(textOf(__Alias(nullptr)), "FIRST");
    EXPECT_EQ(numberOf(__Select(nullptr)), 2); // creation of FIRST took area 1 for a moment
}

} // namespace
