// The table tests' fixture: each test a storage directory and a fresh runtime.
#include "support/table_fixture.h"

#include "platform/process.h"
#include "support/unattended.h"

#include <cstdio>

namespace zq::table_test {

void TableTest::SetUp() {
    StorageTest::SetUp();
    __RetGlob(1);
    zq_set_durable_commit(0);
}

void TableTest::TearDown() {
    __EndGlobal();
    StorageTest::TearDown();
}

pObj TableTest::structure(std::initializer_list<FieldSpec> fields) {
    pObj a = __CreateArray(__INIT_NUL());
    for (const FieldSpec &f : fields)
        __NewArrayElement(a, __CreateArray(text(f.name), text(f.type), num(f.length), num(f.decimals), __INIT_NUL()));
    return a;
}

void TableTest::createAndUse(const char *name, std::initializer_list<FieldSpec> fields) {
    ASSERT_TRUE(isTrue(__DBCREATE(text(name), structure(fields), nullptr)));
    use(name);
}

void TableTest::use(const char *name, const char *alias, bool newArea) {
    ASSERT_TRUE(isTrue(__DBUSEAREA(__INIT_BOOL(newArea), nullptr, text(name), alias ? text(alias) : nullptr)));
}

std::vector<std::pair<uint32_t, std::string>> TableTest::indexEntries(const char *index, uint32_t keyBytes) const {
    __CommitAll(); // new entries reach the index files at a commit
    std::vector<uint8_t> bytes = fileBytes(index);
    std::vector<std::pair<uint32_t, std::string>> out;
    if (bytes.size() < 20)
        return out;
    uint32_t appInfo = storage_test::readU32(bytes, 4), count = storage_test::readU32(bytes, 8);
    size_t at = 20 + appInfo;
    for (uint32_t i = 0; i < count && at + 12 + keyBytes <= bytes.size(); ++i) {
        out.emplace_back(storage_test::readU32(bytes, at + 8),
                         std::string(reinterpret_cast<const char *>(&bytes[at + 12]), keyBytes));
        at += 8 + storage_test::readU16(bytes, at + 2); // header and capacity
    }
    return out;
}

pObj num(double n) { return __INIT_DOUBLE(n); }
pObj text(const char *s) { return __INIT_CHARPTR(s); }
pObj date(double dayNumber) { return __INIT_DATE(dayNumber); }

std::string textOf(pObj x) {
    if (!x || x->type != TYPE_CHAR || !x->payload.c)
        return "<not text>";
    return x->payload.c;
}

double numberOf(pObj x) {
    if (!x || (x->type != TYPE_NUMERIC && x->type != TYPE_DATE && x->type != TYPE_LONG))
        return -12345.678;
    return x->type == TYPE_LONG ? x->payload.l : x->payload.d;
}

bool isTrue(pObj x) { return x && x->type == TYPE_LOGICAL && x->payload.l; }

void TableDeathTest::expectRefused(const TableRefusal &r) {
    test::UnattendedBoxes boxes;
    EXPECT_EXIT(
        {
            r.call();
            std::fputs("returned\n", stderr);
            platform::exitProcess(3);
        },
        ::testing::ExitedWithCode(0), "");
    std::string expected = std::string("Fatal Error\t16\t") + zq_runtime_error_text(r.code);
    if (r.aux >= 0)
        expected += std::string("\\n") + zq_aux_messages[r.aux];
    auto lines = boxes.lines();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), expected);
    EXPECT_EQ(lines.size(), 1u) << lines.front();
}

} // namespace zq::table_test
