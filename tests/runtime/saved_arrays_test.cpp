// Saved arrays: the records ExecDumpArray writes, __RestoreArray reading them back, and
// the registered arrays a runtime error saves before the run ends.
#include "runtime/arrays_support.h"
#include "support/storage_fixture.h"

#include <cstring>

namespace {

using namespace zq::test;

class SavedArrays : public zq::storage_test::StorageTest {
protected:
    void SetUp() override {
        StorageTest::SetUp();
        __RetGlob(1);
    }
    void TearDown() override {
        __EndGlobal();
        StorageTest::TearDown();
    }

    // The records of the saved database named base, as byte strings.
    std::vector<std::string> records(const char *base) {
        std::vector<std::string> out;
        char name[64];
        KindDatabaseName(__INIT_CHARPTR(base), name, nullptr, 'L');
        LocalID id = DmFindDatabase(0, name);
        if (!id)
            return out;
        DmOpenRef db = DmOpenDatabase(0, id);
        for (uint32_t i = 0; i < DmNumRecords(db); ++i)
            out.push_back(recordText(db, i));
        DmCloseDatabase(db);
        return out;
    }

    static uint32_t u32(const std::string &r, size_t at) {
        uint32_t v;
        std::memcpy(&v, r.data() + at, 4);
        return v;
    }
};

TEST_F(SavedArrays, RecordsInPreOrderAndBackAgain) {
    pObj row = __CreateArray(__INIT_DOUBLE(1.5), __INIT_CHARPTR("abc"), __INIT_BOOL(1), __INIT_NIL(),
                             __INIT_DATE(45000), __INIT_LONG(-3), __INIT_NUL());
    pObj deep = __CreateArray(numbers({2}), __INIT_CHARPTR(""), __INIT_NUL());
    pObj a = __CreateArray(row, __INIT_DOUBLE(5), deep, __INIT_NUL());
    ExecDumpArray(a, __INIT_CHARPTR("pedidos"));

    auto r = records("pedidos");
    ASSERT_EQ(r.size(), 12u);
    EXPECT_EQ(r[0].size(), 4u);
    EXPECT_EQ(u32(r[0], 0), 3u) << "the outer count, its scalar left out below";
    EXPECT_EQ(u32(r[1], 0), 6u);
    ASSERT_EQ(r[2].size(), 32u);
    EXPECT_EQ(u32(r[2], 0), 0u) << "next written as 0";
    EXPECT_EQ(u32(r[2], 4), uint32_t(CLASS_ELEMENT));
    EXPECT_EQ(u32(r[2], 8), uint32_t(TYPE_NUMERIC));
    EXPECT_EQ(r[2].substr(12, 2), std::string("\xff\xff", 2));
    double d;
    std::memcpy(&d, r[2].data() + 16, 8);
    EXPECT_EQ(d, 1.5);
    ASSERT_EQ(r[3].size(), 36u);
    EXPECT_EQ(u32(r[3], 16), 0u) << "the text pointer written as 0";
    EXPECT_EQ(r[3].substr(32), std::string("abc\0", 4));
    EXPECT_EQ(u32(r[8], 0), 2u) << "the second row";
    EXPECT_EQ(u32(r[9], 0), 1u) << "its nested array";
    EXPECT_EQ(r[11].size(), 33u) << "an empty text keeps its NUL";

    pObj back = __RestoreArray(__INIT_CHARPTR("PEDIDOS"));
    ASSERT_EQ(back->storageClass, CLASS_ARRAY);
    ASSERT_EQ(__Array_Get_Amnt_Itens(back), 2);
    pObj r1 = at(back, 1);
    ASSERT_EQ(__Array_Get_Amnt_Itens(r1), 6);
    EXPECT_EQ(at(r1, 1)->payload.d, 1.5);
    EXPECT_STREQ(at(r1, 2)->payload.c, "abc");
    EXPECT_EQ(at(r1, 3)->type, TYPE_LOGICAL);
    EXPECT_EQ(at(r1, 3)->payload.l, 1);
    EXPECT_EQ(at(r1, 4)->type, TYPE_NIL);
    EXPECT_EQ(at(r1, 5)->type, TYPE_DATE);
    EXPECT_EQ(at(r1, 5)->payload.d, 45000);
    EXPECT_EQ(at(r1, 6)->payload.l, -3);
    EXPECT_EQ(numbersOf(at(at(back, 2), 1)), (std::vector<double>{2}));
    EXPECT_STREQ(at(at(back, 2), 2)->payload.c, "");
    EXPECT_TRUE(records("pedidos").empty()) << "restoring deletes the saved database";
    EXPECT_EQ(__RestoreArray(__INIT_CHARPTR("pedidos"))->type, TYPE_NIL);
}

TEST_F(SavedArrays, EmptyArraysAndPointersEndTheSave) {
    ExecDumpArray(numbers({}), __INIT_CHARPTR("vazio"));
    EXPECT_TRUE(records("vazio").empty());
    EXPECT_EQ(__RestoreArray(__INIT_CHARPTR("vazio"))->type, TYPE_NIL);

    int target = 0;
    pObj row = __CreateArray(__INIT_DOUBLE(1), __INIT_VOIDPTR(&target), __INIT_DOUBLE(2), __INIT_NUL());
    ExecDumpArray(__CreateArray(row, numbers({3}), __INIT_NUL()), __INIT_CHARPTR("ponteiro"));
    auto r = records("ponteiro");
    ASSERT_EQ(r.size(), 3u) << "outer count, row count, the first value; then the pointer stops it";
    // A later save replaces the earlier one.
    ExecDumpArray(__CreateArray(numbers({7}), __INIT_NUL()), __INIT_CHARPTR("ponteiro"));
    pObj back = __RestoreArray(__INIT_CHARPTR("ponteiro"));
    EXPECT_EQ(numbersOf(at(back, 1)), (std::vector<double>{7}));

    // An array holding itself is saved as deep as a reader follows, then the save stops.
    pObj loop = numbers({5});
    __AAdd(loop, loop);
    ExecDumpArray(__CreateArray(loop, __INIT_NUL()), __INIT_CHARPTR("laco"));
    EXPECT_EQ(records("laco").size(), 1u + 2 * 256) << "outer count, then a count and a 5 per level";
    pObj level = __RestoreArray(__INIT_CHARPTR("laco"));
    int depth = 0;
    for (pObj last; __Array_Get_Amnt_Itens(level) > 0 &&
                    (last = at(level, __Array_Get_Amnt_Itens(level)))->type == TYPE_ARRAY;
         ++depth)
        level = last; // nested arrays come back as themselves
    EXPECT_EQ(depth, 256);
}

TEST_F(SavedArrays, RuntimeErrorSavesTheRegisteredArrays) {
    EXPECT_EXIT(
        {
            __RetGlob(1);
            __begin_context();
            pObj stock = __CreateArray(texts({"parafuso", "porca"}), __INIT_NUL());
            __RegisterArray(numbers({}), __INIT_CHARPTR("estoque"));
            __RegisterArray(stock, __INIT_CHARPTR("estoque")); // the name now saves this one
            __end_context(nullptr); // registered arrays outlive their context
            __GET_ARRAY_EL(stock, 5);
        },
        ::testing::ExitedWithCode(0), "");
    EXPECT_TRUE(sawBox("BOUND ERROR!"));
    pObj back = __RestoreArray(__INIT_CHARPTR("estoque"));
    ASSERT_EQ(back->storageClass, CLASS_ARRAY);
    EXPECT_EQ(textsOf(at(back, 1)), (std::vector<std::string>{"parafuso", "porca"}));
}

} // namespace
