// Compaction, emptying, and the fixed-stride index databases' sort and search.
#include "support/storage_fixture.h"

#include <cstring>
#include <filesystem>
#include <fstream>

using namespace zq::storage_test;

namespace {

using CompactionTest = StorageTest;

TEST_F(CompactionTest, CompactionDropsRowsMarkedDeleted) {
    DmOpenRef db = makeDatabase("table");
    MemHandle block = DmNewHandle(db, 8);
    DmWrite(MemHandleLock(block), 0, "tabledef", 8);
    MemPtrUnlock(MemHandleLock(block));
    // Rows end in their mark and a NUL: "!" live, "*" deleted.
    for (const char *row : {"ana!", "bob*", "cid!", "dan*", "eva!"})
        append(db, std::string(row) + '\0');
    EXPECT_EQ(DmCompactDatabase(db), 1);
    EXPECT_EQ(DmNumRecords(db), 3u);
    EXPECT_EQ(recordText(db, 1), std::string("cid!", 5));
    EXPECT_EQ(recordText(db, 2), std::string("eva!", 5));
    EXPECT_FALSE(std::filesystem::exists(storageFile("table_Temp")));
    DmCloseDatabase(db);
    db = DmOpenDatabase(0, DmFindDatabase(0, "table"));
    EXPECT_EQ(DmNumRecords(db), 3u);
    EXPECT_EQ(recordText(db, 0), std::string("ana!", 5));
    std::vector<uint8_t> file = fileBytes("table");
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(&file[20]), 8), "tabledef");
    EXPECT_EQ(readU32(file, 16), 28u + 3 * 13);

    for (uint32_t i = 0; i < 3; ++i) {
        MemHandle h = DmGetRecord(db, i);
        DmWrite(MemHandleLock(h), 3, "*", 1);
        MemHandleUnlock(h);
        DmReleaseRecord(db, i, 1);
    }
    EXPECT_EQ(DmCompactDatabase(db), 0);
    EXPECT_EQ(DmNumRecords(db), 0u);
}

// A compaction cut short after it removed the file: the next find puts the copy in its
// place. Cut short before: the file is whole and the copy, perhaps partial, goes.
TEST_F(CompactionTest, ACompactionCutShortIsSettledByTheNextFind) {
    for (bool removed : {true, false}) {
        std::string name = removed ? "moved" : "whole";
        DmOpenRef db = makeDatabase(name);
        append(db, "kept!");
        DmCloseDatabase(db);
        StorageClose();
        if (removed)
            std::filesystem::rename(storageFile(name), storageFile(name + "_Temp"));
        else
            std::ofstream(storageFile(name + "_Temp")) << "cut short";
        db = DmOpenDatabase(0, DmFindDatabase(0, name.c_str()));
        ASSERT_NE(db, nullptr) << name;
        EXPECT_EQ(recordText(db, 0), "kept!") << name;
        EXPECT_FALSE(std::filesystem::exists(storageFile(name + "_Temp"))) << name;
        DmCloseDatabase(db);
    }
}

TEST_F(CompactionTest, ZapKeepsOnlyTheHeaderAndAppInfo) {
    DmOpenRef db = makeDatabase("zap");
    MemHandle block = DmNewHandle(db, 4);
    DmWrite(MemHandleLock(block), 0, "info", 4);
    MemPtrUnlock(MemHandleLock(block));
    append(db, "gone!");
    __InternalZap(db);
    EXPECT_EQ(DmNumRecords(db), 0u);
    EXPECT_EQ(recordText(db, 0), "<none>");
    append(db, "new!");
    EXPECT_EQ(recordText(db, 0), "new!");
    DmCloseDatabase(db);
    StorageClose();
    std::vector<uint8_t> file = fileBytes("zap");
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(&file[20]), 4), "info");
    EXPECT_EQ(readU32(file, 16), 24u + 12);
    EXPECT_EQ(readU32(fileBytes("zap_OS"), 20), 24u);
}

int16_t compareKey(void *key, void *rec, int16_t, void *, void *, void *) {
    return int16_t(std::memcmp(key, static_cast<char *>(rec) + 4, 3));
}

TEST_F(CompactionTest, IndexEntriesSortByKeyAndAreSearched) {
    // Entries: a 4-byte record number, then the key.
    DmOpenRef db = makeDatabase("keys", 0x494E4458u);
    int record = 0;
    for (const char *key : {"pear", "appl", "fig ", "kiwi", "date", "fig ", "lime"})
        append(db, std::string(4, char(record++)) + key);
    EXPECT_EQ(OrdenarIndice(db), 0);
    std::vector<std::string> keys;
    for (uint32_t i = 0; i < DmNumRecords(db); ++i)
        keys.push_back(recordText(db, i).substr(4));
    EXPECT_EQ(keys, (std::vector<std::string>{"appl", "date", "fig ", "fig ", "kiwi", "lime", "pear"}));
    struct Case {
        const char *key;
        uint32_t position;
    };
    for (Case c : {Case{"fig", 4}, Case{"aaa", 0}, Case{"zzz", 7}, Case{"gra", 4}, Case{"app", 1}, Case{"pea", 7}}) {
        char key[3];
        std::memcpy(key, c.key, 3);
        EXPECT_EQ(DmFindSortPosition(db, key, nullptr, compareKey, 0), c.position) << c.key;
    }
    __InternalZap(db);
    EXPECT_EQ(DmFindSortPosition(db, (void *)"abc", nullptr, compareKey, 0), dmAppendPosition);
}

} // namespace
