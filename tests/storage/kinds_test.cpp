// Databases named by kind, and copying whole records in and out of buffers.
#include "support/storage_fixture.h"

#include "zelqa/values.h"

#include <cstring>

using namespace zq::storage_test;

namespace {

using KindsTest = StorageTest;

TEST_F(KindsTest, NamesAndCreatorsFollowTheKindLetter) {
    struct Case {
        char kind;
        const char *name;
        const char *creatorBytes;
    };
    for (Case c : {Case{'H', "VENDAS.tHst", "tsHt"}, Case{'I', "VENDAS.tIns", "snIt"}, Case{'P', "VENDAS.tPda", "adPt"},
                   Case{'Z', "VENDAS", "\0\0\0\0"}, Case{'L', "VENDAS.tLog", "goLt"}, Case{'q', "VENDAS.tLog", "goLt"}}) {
        char name[128] = {};
        uint32_t creator = 99;
        KindDatabaseName(__INIT_CHARPTR("vEndas"), name, &creator, c.kind);
        EXPECT_STREQ(name, c.name);
        EXPECT_EQ(std::memcmp(&creator, c.creatorBytes, 4), 0) << c.kind;
    }
}

TEST_F(KindsTest, OpenDeleteAndRecordBuffers) {
    pObj base = __INIT_CHARPTR("saved");
    DmOpenRef db = OpenKindDatabase(0, base, 0, 'L');
    ASSERT_NE(db, nullptr);
    uint32_t index = dmAppendPosition;
    WriteRecordBuffer(db, "0123456789", 10, &index);
    EXPECT_EQ(index, 0u);
    index = dmAppendPosition;
    WriteRecordBuffer(db, "abc", 3, &index);
    EXPECT_EQ(index, 1u);
    char buffer[32] = {};
    EXPECT_EQ(ReadRecordBuffer(db, 0, buffer, 4), 4u);
    EXPECT_EQ(std::string(buffer, 4), "0123");
    EXPECT_EQ(ReadRecordBuffer(db, 0, buffer, 20), 10u);
    EXPECT_EQ(ReadRecordBuffer(db, 2, buffer, 0), 0u);
    // A shorter write over a longer record makes the record exactly the bytes given.
    index = 0;
    WriteRecordBuffer(db, "ABCDEFGHIJKL", 3, &index);
    EXPECT_EQ(recordText(db, 0), "ABC");
    index = 1;
    WriteRecordBuffer(db, "xyz+more", 8, &index);
    EXPECT_EQ(recordText(db, 1), "xyz+more");
    DmCloseDatabase(db);
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(&fileBytes("SAVED.tLog")[0]), 2), std::string("\x02V", 2));

    db = OpenKindDatabase(0, base, 0, 'L');
    EXPECT_EQ(DmNumRecords(db), 2u);
    DmCloseDatabase(db);
    db = OpenKindDatabase(0, base, 1, 'L');
    EXPECT_EQ(DmNumRecords(db), 0u);
    DmCloseDatabase(db);
    EXPECT_EQ(DeleteKindDatabase(0, base, 'L'), 1);
    EXPECT_EQ(DeleteKindDatabase(0, base, 'L'), 0);
    EXPECT_EQ(DmFindDatabase(0, "SAVED.tLog"), 0u);
}

} // namespace
