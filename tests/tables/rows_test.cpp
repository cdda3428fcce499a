// Stored rows and memo texts, read from the files' bytes.
#include "support/table_fixture.h"

#include <algorithm>
#include <cstring>

using namespace zq::table_test;
using zq::storage_test::readU16;
using zq::storage_test::readU32;

namespace {

class RowsTest : public TableTest {
protected:
    // The bytes of record i of a database, as its file holds them.
    std::string record(const std::string &db, uint32_t i) {
        std::vector<uint8_t> file = fileBytes(db);
        uint32_t offset = readU32(fileBytes(db + "_OS"), 20 + 4 * i);
        return std::string(file.begin() + offset + 8, file.begin() + offset + 8 + readU16(file, offset));
    }
    uint16_t capacity(const std::string &db, uint32_t i) {
        return readU16(fileBytes(db), readU32(fileBytes(db + "_OS"), 20 + 4 * i) + 2);
    }
    uint8_t attributes(const std::string &db, uint32_t i) {
        return fileBytes(db)[readU32(fileBytes(db + "_OS"), 20 + 4 * i) + 4];
    }
    void makeStock() {
        createAndUse("stock", {{"name", "C", 10, 0}, {"qty", "N", 8, 2}, {"born", "D", 8, 0},
                               {"ok", "L", 1, 0}, {"note", "M", 10, 0}});
    }
    void appendStock(const char *name, double qty, double born, bool ok, const char *note) {
        __DBAPPEND(nullptr);
        __SetField(nullptr, num(1), text(name));
        __SetField(nullptr, num(2), num(qty));
        __SetField(nullptr, num(3), date(born));
        __SetField(nullptr, num(4), __INIT_BOOL(ok));
        if (note)
            __SetField(nullptr, num(5), text(note));
        __Commit(nullptr);
    }
};

// A stored record: the row's fields, zeros up to the record's end, the mark in its last two.
std::string stored(const std::string &fields, size_t recordSize, char mark = '!') {
    std::string r = fields;
    r.resize(recordSize - 2, '\0');
    return r + mark + '\0';
}

// A number's bytes as this machine holds them, or reversed.
template <class Number>
std::string bytesOf(Number n, bool swap = false) {
    std::string s(sizeof n, '\0');
    std::memcpy(s.data(), &n, sizeof n);
    if (swap)
        std::reverse(s.begin(), s.end());
    return s;
}

TEST_F(RowsTest, RowIsStoredFieldAfterFieldWithItsMark) {
    makeStock();
    appendStock("Ann   ", 12.5, 45000, true, "hello");
    // The record is as long as the longest row: NAME of 10 letters and its zero byte.
    std::string fields = std::string("Ann", 4) + bytesOf(12.5) + bytesOf(45000.0) + std::string(1, '\1') +
                         bytesOf(uint32_t(1));
    EXPECT_EQ(record("STOCK", 0), stored(fields, 11 + 8 + 8 + 1 + 4 + 2));
    EXPECT_EQ(attributes("STOCK", 0), 0x40);
    EXPECT_EQ(capacity("STOCK", 0), 11u + 8 + 8 + 1 + 4 + 2);
    EXPECT_EQ(record("STOCK_M", 0), std::string("hello", 6));
    // Read back, the text is padded to its declared length.
    __TBL_GoTop(nullptr);
    EXPECT_EQ(textOf(__GetFieldByName(nullptr, text("NAME"))), "Ann       ");
    EXPECT_EQ(textOf(__GetField(nullptr, num(1), __INIT_BOOL(1))), "Ann");
    EXPECT_EQ(numberOf(__GetFieldByID(nullptr, num(2))), 12.5);
    EXPECT_EQ(__GetFieldByID(nullptr, num(3))->type, uint32_t(TYPE_DATE));
    EXPECT_TRUE(isTrue(__GetFieldByID(nullptr, num(4))));
    EXPECT_EQ(textOf(__GetFieldByID(nullptr, num(5))), "hello");
}

TEST_F(RowsTest, ByteSwapReversesNumbersDatesAndMemoReferences) {
    makeStock();
    __Set(num(9), __INIT_BOOL(1));
    appendStock("", 3.25, 7, false, "m");
    std::string fields = std::string(1, '\0') + bytesOf(3.25, true) + bytesOf(7.0, true) + std::string(1, '\0') +
                         bytesOf(uint32_t(1), true);
    EXPECT_EQ(record("STOCK", 0), stored(fields, 34));
    __TBL_GoTop(nullptr);
    EXPECT_EQ(numberOf(__GetFieldByID(nullptr, num(2))), 3.25);
    EXPECT_EQ(textOf(__GetFieldByID(nullptr, num(5))), "m");
    __Set(num(9), __INIT_BOOL(0));
    __TBL_GoTop(nullptr);
    EXPECT_NE(numberOf(__GetFieldByID(nullptr, num(2))), 3.25);
}

TEST_F(RowsTest, ShortenedRowKeepsItsRecordAndItsMarkAtTheEnd) {
    makeStock();
    appendStock("Annabelle", 1, 0, false, nullptr);
    size_t longer = record("STOCK", 0).size();
    __TBL_GoTop(nullptr);
    __SetField(nullptr, num(1), text("Al"));
    __Commit(nullptr);
    std::string stored = record("STOCK", 0);
    ASSERT_EQ(stored.size(), longer);
    EXPECT_EQ(stored.substr(0, 3), std::string("Al", 3));
    EXPECT_EQ(stored.substr(longer - 2), std::string("!", 2));
    __TBL_Delete(nullptr);
    __Commit(nullptr);
    EXPECT_EQ(record("STOCK", 0), stored.substr(0, longer - 2) + std::string("*", 2));
    EXPECT_EQ(attributes("STOCK", 0), 0);
    __TBL_GoTop(nullptr);
    EXPECT_TRUE(isTrue(__TBL_Deleted(nullptr)));
    EXPECT_EQ(textOf(__GetField(nullptr, num(1), __INIT_BOOL(1))), "Al");
    __TBL_Recall(nullptr);
    __Commit(nullptr);
    EXPECT_EQ(record("STOCK", 0).substr(longer - 2), std::string("!", 2));
    EXPECT_EQ(attributes("STOCK", 0), 0x40);
}

TEST_F(RowsTest, LengthenedRowGrowsWithinItsRecord) {
    makeStock();
    appendStock("a", 1, 0, false, nullptr);
    appendStock("b", 2, 0, false, nullptr);
    uint32_t second = readU32(fileBytes("STOCK_OS"), 24);
    __TBL_GoTop(nullptr);
    __SetField(nullptr, num(1), text("abcdefghij"));
    __Commit(nullptr);
    EXPECT_EQ(record("STOCK", 0).substr(0, 11), std::string("abcdefghij", 11));
    EXPECT_EQ(readU32(fileBytes("STOCK_OS"), 24), second); // nothing behind it moved
    __TBL_GoTo(nullptr, num(2));
    EXPECT_EQ(textOf(__GetField(nullptr, num(1), __INIT_BOOL(1))), "b");
    EXPECT_EQ(numberOf(__GetFieldByID(nullptr, num(2))), 2);
}

// A character field stores its text cut to the declared length, without trailing blanks.
TEST_F(RowsTest, TextIsStoredCutAndWithoutTrailingBlanks) {
    struct Case {
        const char *value, *stored, *trimmed, *padded;
    } cases[] = {
        {"     ", "", "", "     "},            // blank: one zero byte, reads empty
        {"abcdefgh", "abcde", "abcde", "abcde"}, // cut to the declared length
    };
    createAndUse("text", {{"t", "C", 5, 0}});
    for (const Case &c : cases) {
        __DBAPPEND(nullptr);
        __SetField(nullptr, num(1), text(c.value));
        __Commit(nullptr);
        uint32_t row = uint32_t(numberOf(__TBL_RecNo(nullptr))) - 1;
        EXPECT_EQ(record("TEXT", row), stored(std::string(c.stored) + '\0', 8)) << c.value;
        __TBL_GoTo(nullptr, num(row + 1));
        EXPECT_EQ(textOf(__GetField(nullptr, num(1), __INIT_BOOL(1))), c.trimmed) << c.value;
        EXPECT_EQ(textOf(__GetFieldByID(nullptr, num(1))), c.padded) << c.value;
    }
}

TEST_F(RowsTest, MemoRecordsAreReusedExceptTheLastOneAndWhenTooSmall) {
    createAndUse("memo", {{"id", "N", 3, 0}, {"note", "M", 10, 0}});
    auto setNote = [](const char *s) {
        __SetField(nullptr, num(2), text(s));
        __Commit(nullptr);
    };
    auto reference = [this](uint32_t row) {
        uint32_t r;
        std::memcpy(&r, record("MEMO", row).data() + 8, 4);
        return r;
    };
    __DBAPPEND(nullptr);
    setNote("a");      // record 0
    setNote("bbb");    // the last record is never overwritten: record 1
    EXPECT_EQ(reference(0), 2u);
    __DBAPPEND(nullptr);
    setNote("x");      // record 2
    __TBL_GoTop(nullptr);
    setNote("dd");     // reference 2 lies below the count 3: overwritten in place
    EXPECT_EQ(reference(0), 2u);
    EXPECT_EQ(record("MEMO_M", 1), std::string("dd", 3));
    EXPECT_EQ(record("MEMO_M", 0), std::string("a", 2));
    setNote("eeeee");  // longer than record 1 can hold: record 3
    EXPECT_EQ(reference(0), 4u);
    EXPECT_EQ(record("MEMO_M", 3), std::string("eeeee", 6));
    __TBL_GoTop(nullptr);
    EXPECT_EQ(textOf(__GetFieldByID(nullptr, num(2))), "eeeee");
    __TBL_GoTo(nullptr, num(2));
    EXPECT_EQ(textOf(__GetFieldByID(nullptr, num(2))), "x");
}

TEST_F(RowsTest, DirtyAttributeIsSetAndCleared) {
    makeStock();
    appendStock("a", 1, 0, false, nullptr);
    appendStock("b", 2, 0, false, nullptr);
    EXPECT_TRUE(isTrue(__IsDirty(nullptr, num(1))));
    SETDIRTY(nullptr, num(1), __INIT_BOOL(0));
    EXPECT_FALSE(isTrue(__IsDirty(nullptr, num(1))));
    EXPECT_EQ(attributes("STOCK", 0), 0);
    EXPECT_TRUE(isTrue(__IsDirty(nullptr, nullptr))); // the current row, record 2
    SETDIRTY(nullptr, num(1), __INIT_BOOL(1));
    EXPECT_EQ(attributes("STOCK", 0), 0x40);
}

TEST_F(RowsTest, RecordSizeIsTheSumOfSlotOffsets) {
    // Slots: C(10) at 0 (12 bytes), N at 12, L at 20, deletion field at 21.
    createAndUse("sizes", {{"c", "C", 10, 0}, {"n", "N", 5, 0}, {"l", "L", 1, 0}});
    EXPECT_EQ(numberOf(__TBL_RecSize(nullptr)), 0 + 12 + 20 + 21);
}

} // namespace
