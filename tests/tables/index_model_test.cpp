// A long random run of row changes, packs, zaps and seeks on a table with two indexes,
// checked after every step against a plain model of the rows.
#include "support/table_fixture.h"

#include <algorithm>
#include <cstdio>
#include <random>
#include <set>

using namespace zq::table_test;

namespace {

struct Row {
    std::string code; // blank-padded to 3
    int number = 0;
    bool deleted = false;
};

std::string padded(const std::string &code) { return (code + "   ").substr(0, 3); }

// The key of each index as the engine builds it: CODE, and STR(NUMBER)+CODE.
std::string keyOf(const Row &r, int order) {
    char number[16];
    std::snprintf(number, sizeof number, "%4d", r.number);
    return order == 1 ? r.code : number + r.code;
}

class IndexModelTest : public TableTest {
protected:
    std::vector<Row> rows;
    std::mt19937 random{20261123};

    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }
    std::string randomCode() {
        std::string code(1, char('A' + pick(4)));
        if (pick(2))
            code += char('A' + pick(4));
        return padded(code);
    }
    void store(const std::string &code, int number, bool commit = true) {
        __SetField(nullptr, num(1), text(code.c_str()));
        __SetField(nullptr, num(2), num(number));
        if (commit)
            __Commit(nullptr);
    }
    void goTo(size_t record) {
        __ClearIndex(nullptr);
        __TBL_GoTo(nullptr, num(double(record + 1)));
    }

    // Each index file holds one entry per row, sorted by key, as the rows are now.
    void checkEntries(const char *index, int order, uint32_t keyBytes) {
        auto entries = indexEntries(index, keyBytes);
        ASSERT_EQ(entries.size(), rows.size()) << index;
        std::set<uint32_t> seen;
        for (size_t i = 0; i < entries.size(); ++i) {
            auto [record, key] = entries[i];
            ASSERT_LT(record, rows.size()) << index;
            ASSERT_TRUE(seen.insert(record).second) << index << " holds row " << record << " twice";
            std::string expected = keyOf(rows[record], order);
            EXPECT_EQ(key, expected + std::string(keyBytes - expected.size(), '\0')) << index << " row " << record;
            if (i > 0) {
                ASSERT_LE(entries[i - 1].second, key) << index;
            }
        }
    }

    // Every index walked in order visits every row once, in key order, fields as modelled.
    void checkWalks() {
        ASSERT_EQ(numberOf(__TBL_RecCount(nullptr)), double(rows.size()));
        for (int order : {1, 2}) {
            __TBL_SetOrder(nullptr, num(order));
            std::set<size_t> seen;
            std::string previous;
            for (__TBL_GoTop(nullptr); !isTrue(__TBL_Eof(nullptr)); __TBL_Skip(nullptr, nullptr)) {
                size_t record = size_t(numberOf(__TBL_RecNo(nullptr))) - 1;
                ASSERT_LT(record, rows.size());
                ASSERT_TRUE(seen.insert(record).second) << "row " << record << " twice in order " << order;
                const Row &r = rows[record];
                EXPECT_EQ(textOf(__GetFieldByID(nullptr, num(1))), r.code);
                EXPECT_EQ(numberOf(__GetFieldByID(nullptr, num(2))), r.number);
                EXPECT_EQ(isTrue(__TBL_Deleted(nullptr)), r.deleted);
                std::string key = keyOf(r, order);
                ASSERT_LE(previous, key) << "order " << order;
                previous = key;
            }
            ASSERT_EQ(seen.size(), rows.size()) << "order " << order;
        }
    }

    // A seek finds a key exactly when some row has it, and lands on the first such row
    // in the walk; soft seeks land on the first greater key.
    void checkSeek(int order) {
        __TBL_SetOrder(nullptr, num(order));
        Row probe{randomCode(), pick(40)};
        std::string key = keyOf(probe, order);
        bool soft = pick(2) == 1;
        bool found = isTrue(__Seek(nullptr, text(key.c_str()), __INIT_BOOL(soft)));
        std::string least; // least key >= probe
        bool any = false;
        for (const Row &r : rows)
            if (keyOf(r, order) >= key && (!any || keyOf(r, order) < least)) {
                least = keyOf(r, order);
                any = true;
            }
        ASSERT_EQ(found, any && least == key) << key;
        if (found || (soft && any)) {
            size_t record = size_t(numberOf(__TBL_RecNo(nullptr))) - 1;
            ASSERT_LT(record, rows.size());
            EXPECT_EQ(keyOf(rows[record], order), least);
            size_t before = 0; // rows with that key that come earlier in the walk
            for (__TBL_Skip(nullptr, num(-1)); !isTrue(__TBL_Bof(nullptr)); __TBL_Skip(nullptr, num(-1)))
                before += keyOf(rows[size_t(numberOf(__TBL_RecNo(nullptr))) - 1], order) == least;
            EXPECT_EQ(before, 0u) << "not the first of equal keys: " << least;
        } else {
            EXPECT_TRUE(isTrue(__TBL_Eof(nullptr))) << key;
        }
    }

    void step() {
        int what = pick(100);
        if (what < 35 || rows.empty()) { // a burst of appends with one commit: entries merged together
            for (int n = 1 + pick(6); n > 0; --n) {
                Row r{randomCode(), pick(40)};
                __DBAPPEND(nullptr);
                store(r.code, r.number, n == 1);
                rows.push_back(r);
            }
        } else if (what < 60) {
            size_t record = size_t(pick(int(rows.size())));
            goTo(record);
            Row &r = rows[record];
            if (pick(2))
                r.code = randomCode();
            else
                r.number = pick(40);
            if (r.deleted)
                __TBL_Recall(nullptr);
            r.deleted = false;
            store(r.code, r.number);
        } else if (what < 75) {
            size_t record = size_t(pick(int(rows.size())));
            goTo(record);
            bool deleted = pick(3) != 0;
            if (deleted)
                __TBL_Delete(nullptr);
            else
                __TBL_Recall(nullptr);
            __Commit(nullptr);
            rows[record].deleted = deleted;
        } else if (what < 79) {
            __dbPack(nullptr);
            rows.erase(std::remove_if(rows.begin(), rows.end(), [](const Row &r) { return r.deleted; }), rows.end());
        } else if (what < 80) {
            __dbZap(nullptr);
            rows.clear();
        } else {
            checkSeek(1 + pick(2));
        }
    }
};

TEST_F(IndexModelTest, RandomChangesKeepBothIndexesInStepWithTheRows) {
    createAndUse("model", {{"code", "C", 3, 0}, {"number", "N", 4, 0}});
    __DBCREATEINDEX(text("mcode"), text("code"), __INIT_NUL());
    __DBCREATEINDEX(text("mnumber"), text("STR(NUMBER)+CODE"), __INIT_NUL());
    for (int i = 0; i < 700 && !HasFatalFailure(); ++i) {
        SCOPED_TRACE("step " + std::to_string(i));
        step();
        checkEntries("MCODE", 1, 3);
        checkEntries("MNUMBER", 2, 11);
        checkWalks();
        if (i % 100 == 99) { // closed and opened again: nothing is rebuilt in vain
            __dbCloseAll();
            use("model");
        }
    }
}

} // namespace
