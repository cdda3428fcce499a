// Contexts, locked temporaries, settings and the end of the run.
#include "support/fresh_runtime.h"
#include "runtime/arrays_support.h"
#include "runtime/context.h"
#include "runtime/memory.h"

#include <cstring>
#include <regex>

namespace {

using namespace zq::test;
using zq::runtime::context;

class Contexts : public zq::test::FreshRuntime {
protected:
    static int32_t listed(int list) { return context().lists[list].count; }
    static std::string dateFormat() { return __Set(__INIT_DOUBLE(4), nullptr)->payload.c; }
};

TEST_F(Contexts, EndReleasesWhatTheBodyMadeAndKeepsWhatItHandsOut) {
    const int32_t variables = listed(zq::runtime::kVariableList);
    pObj outerArray = numbers({1});
    pObj outerVariable = __SET_OBJECT(nullptr, __INIT_DOUBLE(1));
    __begin_context();
    EXPECT_EQ(context().depth, 2);
    pObj local = __SET_OBJECT(nullptr, __INIT_CHARPTR("local"));
    pObj kept = __SET_OBJECT(nullptr, __INIT_CHARPTR("kept"));
    numbers({1, 2, 3});                       // dropped with the context
    pObj stored = numbers({4});
    outerVariable = __SET_OBJECT(outerVariable, stored); // lowers its depth to the variable's
    pObj nested = numbers({5});
    __AAdd(outerArray, nested);
    EXPECT_EQ(__end_context(kept), kept);
    (void)local;
    EXPECT_EQ(context().depth, 1);
    EXPECT_EQ(listed(zq::runtime::kVariableList), variables + 1) << "only the handed-out variable";
    EXPECT_EQ(kept->depth, 1);
    EXPECT_STREQ(kept->payload.c, "kept");
    EXPECT_EQ(listed(zq::runtime::kArrayList), 3);
    EXPECT_EQ(outerVariable, stored);
    EXPECT_EQ(at(outerArray, 2), nested);
    EXPECT_EQ(numbersOf(nested), (std::vector<double>{5}));
}

TEST_F(Contexts, ReturnedTemporaryStaysLockedUntilTheCallerEnds) {
    __begin_context();
    __begin_context();
    pObj result = __end_context(__INIT_CHARPTR("result"));
    EXPECT_EQ(result->lockCount, 2);
    EXPECT_EQ(context().lockedTemporaries, 1);
    for (int i = 0; i < 300; ++i)
        __INIT_LONG(i);
    EXPECT_STREQ(result->payload.c, "result");
    __end_context(nullptr);
    EXPECT_EQ(result->lockCount, 0);
    EXPECT_EQ(result->objLength, 0) << "unlocking drops the text";
    EXPECT_EQ(context().lockedTemporaries, 0);
}

TEST_F(Contexts, LockedTemporariesOutliveTheRingUntilTheirContextEnds) {
    __begin_context();
    pObj t = __INIT_CHARPTR("held");
    pObj u = __INIT_CHARPTR("free");
    __LockStack(t, __INIT_DOUBLE(1), __INIT_NUL(), u);
    EXPECT_EQ(t->lockCount, 2);
    EXPECT_EQ(u->lockCount, 0) << "the list ends at NUL";
    __ReleaseStack2();
    EXPECT_STREQ(t->payload.c, "held");
    EXPECT_EQ(u->objLength, 0);
    for (int i = 0; i < 1000; ++i)
        EXPECT_NE(__INIT_LONG(i), t);
    __end_context(nullptr);
    EXPECT_EQ(context().lockedTemporaries, 0);
    EXPECT_EQ(t->objLength, 0);
}

TEST_F(Contexts, DebugFramesOfAnEndedContextAreDropped) {
    zq_enter_function("OUTER", 1);
    __begin_context();
    zq_enter_function("INNER", 2);
    zq_enter_function("INNER2", 3);
    __end_context(nullptr);
    ASSERT_NE(context().frames, nullptr);
    EXPECT_STREQ(context().frames->name, "OUTER");
    EXPECT_EQ(context().frames->next, nullptr);
}

TEST_F(Contexts, SettingsReadStoreAndKeepTheDateFormatInStep) {
    EXPECT_EQ(__Set(__INIT_DOUBLE(1), nullptr)->type, TYPE_NIL);
    EXPECT_EQ(__Set(__INIT_DOUBLE(5), nullptr)->payload.d, 1940);
    __begin_context();
    __Set(__INIT_DOUBLE(7), __INIT_CHARPTR("kept"));
    __end_context(nullptr);
    EXPECT_STREQ(__Set(__INIT_DOUBLE(7.8), nullptr)->payload.c, "kept") << "settings outlive contexts";

    EXPECT_EQ(dateFormat(), "mm/dd/yy");
    __SetCentury(__INIT_BOOL(1));
    EXPECT_EQ(dateFormat(), "mm/dd/yyyy");
    EXPECT_EQ(__SetCentury(nullptr)->payload.l, 1);
    __Set(__INIT_DOUBLE(12), __INIT_BOOL(0));
    EXPECT_EQ(dateFormat(), "mm/dd/yy");

    struct Case { bool century; const char *given, *stored; };
    const Case cases[] = {
        {false, "yyyy/mm/dd", "yy/mm/dd"}, {false, "mm/dd/yyyy", "mm/dd/yyyy"},
        {false, "dd.mm.yy", "dd.mm.yy"},   {true, "dd/mm/yy", "dd/mm/yyyy"},
        {true, "yy.mm.dd", "yyyy.mm.dd"},  {true, "YY-MM-DD", "yyYY-MM-DD"},
        {true, "dd/mm", "dd/mm"},          {true, "dd/mm/yyyy", "dd/mm/yyyy"},
    };
    for (const Case &c : cases) {
        __SetCentury(__INIT_BOOL(c.century));
        __Set(__INIT_DOUBLE(4), __INIT_CHARPTR(c.given));
        EXPECT_EQ(dateFormat(), c.stored) << c.given << " century " << c.century;
    }
}

TEST_F(Contexts, VersionIsTheBuildStamp) {
    std::string stamp = __GetRTVer()->payload.c;
    EXPECT_TRUE(std::regex_match(stamp, std::regex("[A-Z][a-z]{2} [ 0-9][0-9] [0-9]{4} [0-9]{2}:[0-9]{2}:[0-9]{2}")))
        << stamp;
}

TEST(ContextsEnd, EndGlobalReleasesEverything) {
    const int32_t before = zq::runtime::allocationBalance();
    __BeginGlobal();
    zq_enter_function("MAIN", 1);
    pObj table = __Array(__INIT_DOUBLE(3), __INIT_DOUBLE(2), __INIT_NUL());
    __AAdd(table, __INIT_CHARPTR("text"));
    __SET_OBJECT(nullptr, __INIT_CHARPTR("variable"));
    __LockStack(__INIT_CHARPTR("locked"), __INIT_NUL());
    __begin_context();
    __CreateArray(table, table, __INIT_NUL());
    __EndGlobal();
    EXPECT_EQ(zq::runtime::allocationBalance(), before);
    EXPECT_EQ(__RetGlob(0), nullptr);
}

class ContextsDeathTest : public ::testing::TestWithParam<RefusedCall> {};

TEST_P(ContextsDeathTest, EndsTheRun) { expectRuntimeError(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Refused, ContextsDeathTest, ::testing::Values(
    RefusedCall{"SettingThirteen", [] { __Set(__INIT_DOUBLE(13), __INIT_LONG(1)); }, "ARGUMENT ERROR!"},
    RefusedCall{"SettingZero", [] { __Set(__INIT_DOUBLE(0), __INIT_LONG(1)); }, "ARGUMENT ERROR!"},
    RefusedCall{"SettingByText", [] { __Set(__INIT_CHARPTR("4"), nullptr); }, "ARGUMENT ERROR!"},
    RefusedCall{"CenturyFromNumber", [] { __SetCentury(__INIT_DOUBLE(1)); }, "ARGUMENT ERROR!"},
    RefusedCall{"LockingMoreThanTheRing", [] { for (int i = 0; i < 151; ++i) __LockStack(__INIT_LONG(i), __INIT_NUL()); }, "STACK FULL!"}
), refusedCallName);

} // namespace
