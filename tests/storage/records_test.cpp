// Records and handles: append, query, write bounds, insert, resize, release and removal.
#include "support/storage_fixture.h"

#include "zelqa/errors.h"

#include <cstring>

using namespace zq::storage_test;

namespace {

using RecordsTest = StorageTest;

// Offsets of the records' headers as the offset index holds them.
std::vector<uint32_t> indexEntries(const std::vector<uint8_t> &index) {
    std::vector<uint32_t> out;
    for (size_t at = 20; at + 4 <= readU32(index, 16); at += 4)
        out.push_back(readU32(index, at));
    return out;
}

TEST_F(RecordsTest, RecordsSurviveReopenWithTheirHeadersAndIndex) {
    DmOpenRef db = makeDatabase("rows");
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(append(db, "first!"), 0u);
    EXPECT_EQ(append(db, "second record!"), 1u);
    // Insert at index 1: the later record moves up, its index entry with it.
    uint32_t at = 1;
    MemHandle h = DmNewRecord(db, &at, 3);
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(DmWrite(MemHandleLock(h), 0, "mid", 3), dmErrNone);
    MemHandleUnlock(h);
    EXPECT_EQ(DmReleaseRecord(db, 1, 0), dmErrNone);
    EXPECT_EQ(DmNumRecords(db), 3u);
    ASSERT_EQ(DmCloseDatabase(db), dmErrNone);
    StorageClose();

    std::vector<uint8_t> file = fileBytes("rows");
    EXPECT_EQ(readU32(file, 8), 3u);
    EXPECT_EQ(readU32(file, 16), 20u + (8 + 6) + (8 + 3) + (8 + 14));
    EXPECT_EQ(indexEntries(fileBytes("rows_OS")), (std::vector<uint32_t>{20, 34, 45}));
    EXPECT_EQ(readU16(file, 34), 3);      // size
    EXPECT_EQ(readU16(file, 34 + 2), 3);  // capacity
    EXPECT_EQ(file[34 + 4], 0);           // released without the dirty flag
    EXPECT_EQ(readU16(file, 34 + 6), 0xFFFF);
    EXPECT_EQ(file[20 + 4], 0x40);        // released dirty

    db = DmOpenDatabase(0, DmFindDatabase(0, "rows"));
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(recordText(db, 0), "first!");
    EXPECT_EQ(recordText(db, 1), "mid");
    EXPECT_EQ(recordText(db, 2), "second record!");
    EXPECT_EQ(recordText(db, 3), "<none>");
}

TEST_F(RecordsTest, WritesStayInsideTheRecordAndNeedALockedHandle) {
    DmOpenRef db = makeDatabase("bounds");
    append(db, "0123456789");
    MemHandle h = DmGetRecord(db, 0);
    char *p = static_cast<char *>(MemHandleLock(h));
    EXPECT_EQ(DmWrite(p, 8, "ABCD", 4), dmErrWriteOutOfBounds);
    EXPECT_EQ(DmSet(p, 9, 2, 'x'), dmErrWriteOutOfBounds);
    EXPECT_EQ(DmWrite(p + 1, 0, "A", 1), dmErrBadArgument); // not the start of a record
    EXPECT_EQ(std::string(p, 10), "0123456789");
    EXPECT_EQ(DmSet(p, 8, 2, 'z'), dmErrNone);
    MemHandleUnlock(h);
    EXPECT_EQ(DmWrite(p, 0, "A", 1), dmErrBadArgument); // unlocked
    EXPECT_EQ(DmReleaseRecord(db, 5, 1), dmErrBadArgument);
    EXPECT_EQ(DmReleaseRecord(db, 0, 1), dmErrNone);
    EXPECT_EQ(DmReleaseRecord(db, 0, 1), dmErrNoRecord);
    EXPECT_EQ(recordText(db, 0), "01234567zz");
    EXPECT_EQ(MemHandleLock(nullptr), nullptr);
    EXPECT_EQ(MemHandleSize(nullptr), 0u);
    // A locked handle is locked again after its alert.
    h = DmQueryRecord(db, 0);
    MemHandleLock(h);
    EXPECT_NE(MemHandleLock(h), nullptr);
    EXPECT_TRUE(sawBox("already locked"));
    // Asking for another record while one is locked frees the locked one.
    append(db, "other");
    MemHandle first = DmQueryRecord(db, 0);
    MemHandleLock(first);
    size_t boxes = boxLines().size();
    MemHandle second = DmQueryRecord(db, 1);
    EXPECT_EQ(MemHandleSize(second), 5u);
    MemHandleLock(second); // a fresh handle: no second "already locked"
    EXPECT_EQ(boxLines().size(), boxes);
}

TEST_F(RecordsTest, HeadersAreReadDefensively) {
    DmOpenRef db = makeDatabase("headers");
    append(db, std::string(200, 'a'));
    append(db, "deleted");
    DmCloseDatabase(db);
    StorageClose();
    std::vector<uint8_t> file = fileBytes("headers");
    file[20] = 0x2C, file[21] = 0x01; // size 300 over capacity 200
    file[228 + 4] = 0x80;             // record 1 deleted
    writeBytes("headers", file);
    db = DmOpenDatabase(0, DmFindDatabase(0, "headers"));
    MemHandle h = DmQueryRecord(db, 0);
    EXPECT_EQ(MemHandleSize(h), 200u);
    EXPECT_EQ(DmQueryRecord(db, 1), nullptr);
    DmCloseDatabase(db);
    StorageClose();
    EXPECT_EQ(readU16(fileBytes("headers"), 20), 200); // the cut size was written back
}

TEST_F(RecordsTest, ResizeAndRemoveKeepLaterRecordsReachable) {
    DmOpenRef db = makeDatabase("resize");
    for (const char *text : {"aaaa", "bbbbbb", "cc", "dddd"})
        append(db, text);
    MemHandle h = DmGetRecord(db, 1);
    DmResizeRecord(h, 40);
    char *p = static_cast<char *>(MemHandleLock(h));
    EXPECT_EQ(std::string(p, 6), "bbbbbb");
    EXPECT_EQ(DmWrite(p, 30, "tail", 4), dmErrNone);
    MemHandleUnlock(h);
    DmReleaseRecord(db, 1, 1);
    EXPECT_EQ(recordText(db, 2), "cc");
    EXPECT_EQ(recordText(db, 1).substr(30, 4), "tail");
    // A smaller size keeps the capacity; removal then drops the whole reserved space.
    h = DmGetRecord(db, 1);
    DmResizeRecord(h, 10);
    DmReleaseRecord(db, 1, 0);
    EXPECT_EQ(recordText(db, 1), std::string("bbbbbb\0\0\0\0", 10));
    EXPECT_EQ(DmRemoveRecord(db, 1), dmErrNone);
    EXPECT_EQ(DmRemoveRecord(db, 7), dmErrNoRecord);
    EXPECT_EQ(DmRemoveRecord(nullptr, 0), dmErrBadArgument);
    EXPECT_EQ(DmNumRecords(db), 3u);
    EXPECT_EQ(recordText(db, 0), "aaaa");
    EXPECT_EQ(recordText(db, 1), "cc");
    EXPECT_EQ(recordText(db, 2), "dddd");
    DmCloseDatabase(db);
    StorageClose();
    std::vector<uint8_t> file = fileBytes("resize");
    EXPECT_EQ(readU32(file, 16), 20u + 12 + 10 + 12);
    EXPECT_EQ(indexEntries(fileBytes("resize_OS")), (std::vector<uint32_t>{20, 32, 42}));
}

TEST_F(RecordsTest, AppInfoBlockSitsBeforeTheRecords) {
    DmOpenRef db = makeDatabase("appinfo");
    LocalID id = DmFindDatabase(0, "appinfo");
    append(db, "row1!");
    MemHandle block = DmNewHandle(db, 12);
    ASSERT_NE(block, nullptr);
    DmWrite(MemHandleLock(block), 0, "definition12", 12);
    MemHandleUnlock(block);
    ASSERT_EQ(DmSetDatabaseInfo(0, id, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &block,
                                nullptr, nullptr, nullptr),
              dmErrNone);
    append(db, "row2!");
    EXPECT_EQ(recordText(db, 0), "row1!");
    DmCloseDatabase(db);
    StorageClose();
    std::vector<uint8_t> file = fileBytes("appinfo");
    EXPECT_EQ(readU32(file, 4), 12u);
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(&file[20]), 12), "definition12");
    EXPECT_EQ(indexEntries(fileBytes("appinfo_OS")), (std::vector<uint32_t>{32, 45}));

    db = DmOpenDatabase(0, id = DmFindDatabase(0, "appinfo"));
    MemHandle h = nullptr;
    DmDatabaseInfo(0, id, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &h, nullptr, nullptr,
                   nullptr);
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(MemHandleSize(h), 12u);
    DmResizeRecord(h, 16);
    char *p = static_cast<char *>(MemHandleLock(h));
    DmWrite(p, 12, "plus", 4);
    MemPtrUnlock(p);
    EXPECT_EQ(recordText(db, 1), "row2!");
    DmCloseDatabase(db);
    db = DmOpenDatabase(0, DmFindDatabase(0, "appinfo"));
    EXPECT_EQ(recordText(db, 0), "row1!");
    EXPECT_EQ(readU32(fileBytes("appinfo"), 4), 16u);
    DmCloseDatabase(db);
    StorageClose(); // a death test's child, its own process on Windows, takes storage again
    EXPECT_EXIT(DmNewHandle(DmOpenDatabase(0, DmFindDatabase(0, "appinfo")), 15361), // a block over 15360 bytes
                ::testing::ExitedWithCode(0), "");
    EXPECT_TRUE(sawBox(std::string(zq_runtime_error_text(ZQ_ERR_RUNTIME)) + "\\n" + zq_aux_messages[53]));
}

} // namespace
