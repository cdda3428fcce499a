// The failure path: message tables, the "Fatal Error" text, and a runtime error ending a process.
#include "runtime/failure.h"
#include "support/refused_call.h"
#include "zelqa.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using zq::runtime::composeFatalText;

TEST(MessageTables, KeepTheirTextsByteForByte) {
    EXPECT_STREQ(zq_runtime_error_text(0), "ARGUMENT ERROR!");
    EXPECT_STREQ(zq_runtime_error_text(12), "INDEX CREATE_ERROR!");
    EXPECT_STREQ(zq_runtime_error_text(15), "STACK FULL!");
    EXPECT_EQ(zq_runtime_error_text(16), nullptr);
    EXPECT_EQ(zq_runtime_error_text(-1), nullptr);

    EXPECT_STREQ(zq_aux_messages[0], "Erro Desconhecio!");
    // Function rows keep a backslash and an n; accents are single Latin-1 bytes.
    EXPECT_STREQ(zq_aux_messages[5], "Fun\347\343o __Seek\\n (\315ndice inexistente)");
    EXPECT_STREQ(zq_aux_messages[7], "Fun\347\343o __TBL_RecSize\\n (Area < 0 ||  Area>=glob->TBL_amnt_open_dbs)");
    EXPECT_STREQ(zq_aux_messages[40], "Fun\347\343o __DBCREATE\\n (amntaStruct<DBS_DEC>");
    // Other rows break their lines for real.
    EXPECT_STREQ(zq_aux_messages[70], "Criar uma conex\343o dial-up\ncom o nome ZELQAConn");
    EXPECT_STREQ(zq_aux_messages[104], "Usu\341rio n\343o Autorizado!");
    EXPECT_STREQ(zq_aux_messages[134], "Function Not Found In DLL!");
    // Repeated texts stay under both codes.
    for (auto [a, b] : {std::pair{33, 35}, {68, 73}, {70, 75}, {107, 109}, {110, 115}, {112, 113}})
        EXPECT_STREQ(zq_aux_messages[a], zq_aux_messages[b]) << a << " and " << b;
}

TEST(FatalText, JoinsErrorAuxiliaryTextAndActiveFunctions) {
    __BeginGlobal();
    EXPECT_EQ(composeFatalText(1, -1), "BOUND ERROR!");
    EXPECT_EQ(composeFatalText(0, 11), "ARGUMENT ERROR!\nFun\347\343o __GetAliasID\\n");
    EXPECT_EQ(composeFatalText(0, 135), "ARGUMENT ERROR!"); // outside the table: no auxiliary text

    const char *saved = zq_aux_messages[1];
    zq_aux_messages[1] = nullptr; // a later component may blank a row
    EXPECT_EQ(composeFatalText(5, 1), "LOW MEMORY!");
    zq_aux_messages[1] = saved;

    zq_enter_function("MAIN", 3);
    zq_enter_function("MAIN", 12);
    __begin_context();
    zq_enter_function("TOTAL", 40);
    EXPECT_EQ(composeFatalText(2, -1), "DIVIDE BY ZERO!\nCalled from: TOTAL(40)\nCalled from: MAIN(12)");
    __end_context(nullptr);
    EXPECT_EQ(composeFatalText(2, -1), "DIVIDE BY ZERO!\nCalled from: MAIN(12)");
    __EndGlobal();
}

void exitRoutineWritesMarker() { std::fputs("exit routine ran\n", stderr); }

TEST(RuntimeErrorDeathTest, ShowsItsBoxRunsTheExitRoutineAndExitsWithZero) {
    zq::test::UnattendedBoxes boxes;
    EXPECT_EXIT(
        {
            __BeginGlobal();
            __RegisterExit(exitRoutineWritesMarker);
            __RuntimeError(0, 3);
        },
        ::testing::ExitedWithCode(0), "exit routine ran");
    auto lines = boxes.lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0], "Fatal Error\t16\tARGUMENT ERROR!\\nFun\347\343o __Seek\\n (!cKeyExpr)");
}

class RefusedCallDeathTest : public ::testing::TestWithParam<zq::test::RefusedCall> {};

TEST_P(RefusedCallDeathTest, EndsTheRun) { zq::test::expectRuntimeError(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Values, RefusedCallDeathTest, ::testing::Values(
    zq::test::RefusedCall{"FullRingOfLockedTemporaries", [] {
        __SetMaxStackElements(4);
        __RetGlob(1);
        for (int i = 0; i < 4; ++i)
            __LockStack(__INIT_LONG(i), __INIT_NUL());
        __INIT_LONG(99);
    }, "STACK FULL!"},
    zq::test::RefusedCall{"NegativeTextLength", [] { __ALLOC_CHARPTR(-1); }, "LOW MEMORY!"}),
    zq::test::refusedCallName);

} // namespace
