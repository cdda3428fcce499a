// Work areas: aliases, selection, the in-use switch, closing and the 128-area limit.
#include "support/table_fixture.h"

using namespace zq::table_test;

namespace {

class AreasTest : public TableTest {
protected:
    void SetUp() override {
        TableTest::SetUp();
        ASSERT_TRUE(isTrue(__DBCREATE(text("items"), structure({{"id", "N", 4, 0}}), nullptr)));
        ASSERT_TRUE(isTrue(__DBCREATE(text("sales"), structure({{"id", "N", 4, 0}}), nullptr)));
        __dbCloseAll(); // creation handed out two area numbers
    }
};

TEST_F(AreasTest, AliasLookupIsExactThenByTableName) {
    use("items", "it");
    use("sales", "sa");
    struct Case {
        pObj area;
        int16_t expected;
    } cases[] = {
        {nullptr, 1},        {__INIT_NIL(), 1},    {num(1), 0},          {num(0), -1},
        {text("IT"), 0},     {text("it"), -1},     {text("SA"), 1},      {text("SALES"), 1},
        {text("ITEMS"), 0},  {text("nothing"), -1}, {__INIT_LONG(2), 1},
    };
    for (const Case &c : cases)
        EXPECT_EQ(__GetAliasID(c.area), c.expected) << (c.area && c.area->type == TYPE_CHAR ? textOf(c.area) : "");
}

TEST_F(AreasTest, UseSetsTheInUseSwitchSelectMakesAnAreaCurrentAndAliasNamesIt) {
    EXPECT_FALSE(isTrue(__Used()));
    use("items");
    EXPECT_TRUE(isTrue(__Used()));
    use("sales", "sa");
    EXPECT_EQ(numberOf(__Select(nullptr)), 2);
    EXPECT_EQ(numberOf(__TBL_Select(text("ITEMS"))), 1);
    EXPECT_EQ(textOf(__Alias(nullptr)), "ITEMS");
    EXPECT_EQ(textOf(__Alias(num(2))), "SA");
    EXPECT_EQ(numberOf(__TBL_Select(text("none"))), 0);
    EXPECT_EQ(numberOf(__Select(nullptr)), 1); // unchanged
    EXPECT_EQ(numberOf(__Select(text("SA"))), 2);
}

TEST_F(AreasTest, SameAliasClosesTheAreaHoldingIt) {
    use("items", "x");
    use("sales", "x");
    EXPECT_EQ(textOf(__Alias(num(1))), "");
    EXPECT_EQ(__GetAliasID(text("X")), 1);
    EXPECT_EQ(__GetAliasID(text("ITEMS")), -1);
}

TEST_F(AreasTest, UsingWithoutNewAreaReusesTheCurrentOne) {
    use("items", "a");
    use("sales", "b", false);
    EXPECT_EQ(numberOf(__Select(nullptr)), 1);
    EXPECT_EQ(textOf(__Alias(nullptr)), "B");
}

TEST_F(AreasTest, OneTableMayBeOpenInTwoAreas) {
    use("items", "a");
    __DBAPPEND(nullptr);
    __SetField(nullptr, num(1), num(7));
    __Commit(nullptr);
    use("items", "b");
    __CloseTBL(0, 0);
    __TBL_GoTop(text("B"));
    EXPECT_EQ(numberOf(__GetFieldByID(text("B"), num(1))), 7);
}

TEST_F(AreasTest, ClosedAreasKeepTheirNumbersUntilAllAreClosed) {
    use("items", "a");
    use("sales", "b");
    __DB_CloseArea(text("A"));
    EXPECT_EQ(__GetAliasID(text("A")), -1);
    use("items", "c");
    EXPECT_EQ(numberOf(__Select(nullptr)), 3);
    for (int i = 3; i < 128; ++i) {
        use("items", ("A" + std::to_string(i)).c_str());
        __CloseTBL(int16_t(i), 0);
    }
    EXPECT_EQ(numberOf(__Select(nullptr)), 128);
    __dbCloseAll();
    use("items", "again");
    EXPECT_EQ(numberOf(__Select(nullptr)), 1);
}

} // namespace
