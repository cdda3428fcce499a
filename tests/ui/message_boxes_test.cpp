// Message boxes: answers from the hook and the environment, box texts, flags and system errors.
#include "platform/system_error.h"
#include "support/refused_call.h"
#include "zelqa.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct ShownBox {
    std::string caption, text;
    unsigned style;
};
std::vector<ShownBox> shown;
int hookAnswer = 1;

int recordingHook(const char *caption, const char *text, unsigned style) {
    shown.push_back({caption, text, style});
    return hookAnswer;
}

class Boxes : public ::testing::Test {
protected:
    void SetUp() override {
        __BeginGlobal();
        shown.clear();
        hookAnswer = 1;
        zq_set_box_hook(recordingHook);
    }
    void TearDown() override {
        zq_set_box_hook(nullptr);
        __EndGlobal();
    }
};

TEST_F(Boxes, LanguageBoxesUseTheirStylesDefaultTitlesAndButtons) {
    struct Case {
        pObj (*box)(pObj, pObj);
        const char *defaultTitle;
        unsigned style;
        int confirm, refuse;
    };
    for (const Case &c : {Case{__MsgAlert, "ALERT", 48, 1, 2}, Case{__MsgStop, "STOP", 16, 1, 2},
                          Case{__MsgYesNo, "Please, select", 36, 6, 7}}) {
        shown.clear();
        hookAnswer = c.confirm;
        EXPECT_EQ(c.box(__INIT_CHARPTR("Gravar?"), nullptr), __INIT_BOOL(1));
        hookAnswer = c.refuse;
        EXPECT_EQ(c.box(__INIT_CHARPTR("Gravar?"), __INIT_CHARPTR("Pedido")), __INIT_BOOL(0));
        c.box(__INIT_CHARPTR("Gravar?"), __INIT_DOUBLE(3)); // a title that is no text
        ASSERT_EQ(shown.size(), 3u);
        EXPECT_EQ(shown[0].caption, c.defaultTitle);
        EXPECT_EQ(shown[0].text, "Gravar?");
        EXPECT_EQ(shown[0].style, c.style);
        EXPECT_EQ(shown[1].caption, "Pedido");
        EXPECT_EQ(shown[2].caption, c.defaultTitle);
    }
}

TEST_F(Boxes, AlertShowsEachTypeAsText) {
    pObj array = __fcpObj_CT(0);
    struct Case {
        pObj value;
        const char *text;
    } cases[] = {
        {nullptr, "nil"},
        {__INIT_BOOL(1), ".T."},
        {__INIT_BOOL(0), ".F."},
        {__INIT_DOUBLE(1.5), "1.500000"},
        {__INIT_DATE(__EncodeDate(2026, 11, 23)), "20261123"},
        {__INIT_DATE(0), "00000000"},
        {__INIT_CHARPTR("texto"), "texto"},
        {array, "{..}"},
        {__INIT_NUL(), "nul"},
        {__INIT_LONG(4), "outros"},
    };
    for (const Case &c : cases) {
        shown.clear();
        EXPECT_EQ(__Alert(c.value), __INIT_NIL());
        ASSERT_EQ(shown.size(), 1u);
        EXPECT_EQ(shown[0].text, c.text);
        EXPECT_EQ(shown[0].caption, "Alert");
        EXPECT_EQ(shown[0].style, 48u);
    }
}

TEST_F(Boxes, GeneralBoxCutsTextsAt511Bytes) {
    std::string longText(700, 'x');
    __gMessageBox("Alert", longText.c_str());
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].text.size(), 511u);
    EXPECT_EQ(shown[0].style, 48u);
}

TEST_F(Boxes, NextKeyIsSwallowedOnceUnlessAWindowIsActivated) {
    zq_take_swallowed_key();
    EXPECT_EQ(zq_take_swallowed_key(), 0);
    __gMessageBox("Alert", "a");
    EXPECT_EQ(zq_box_open(), 0);
    EXPECT_EQ(zq_take_swallowed_key(), 1);
    EXPECT_EQ(zq_take_swallowed_key(), 0);
    __gMessageBox("Alert", "b");
    __ActivateWin(nullptr);
    EXPECT_EQ(zq_take_swallowed_key(), 0);
    __CloseDialog();
}

int boxOpenSeenByHook = -1;
int flagReadingHook(const char *, const char *, unsigned) {
    boxOpenSeenByHook = zq_box_open();
    return 1;
}

TEST_F(Boxes, BoxOpenFlagIsUpWhileTheBoxIs) {
    zq_set_box_hook(flagReadingHook);
    __gMessageBox("Alert", "x");
    EXPECT_EQ(boxOpenSeenByHook, 1);
    EXPECT_EQ(zq_box_open(), 0);
}

TEST_F(Boxes, LastSystemErrorIsShownOnlyWhenThereIsOne) {
    zq::platform::setLastSystemError(0);
    EXPECT_EQ(MostraErro(), 0u);
    EXPECT_TRUE(shown.empty());
    zq::platform::setLastSystemError(2);
    EXPECT_EQ(MostraErro(), 2u);
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].caption, "Error");
    EXPECT_EQ(shown[0].style, 64u);
    EXPECT_FALSE(shown[0].text.empty());
}

TEST_F(Boxes, DrawingNeedsAWindowAndText) {
    EXPECT_EQ(__DspMsg("x", 1, 1), 0); // no active window
    EXPECT_EQ(__DspMsg("", 1, 1), 0);
}

TEST(UnattendedBoxes, EnvironmentAnswersAndLogsEveryBox) {
    __BeginGlobal();
    {
        zq::test::UnattendedBoxes boxes(6);
        EXPECT_EQ(__MsgYesNo(__INIT_CHARPTR("Linha 1\nLinha 2"), nullptr), __INIT_BOOL(1));
        __gMessageBox("Alert", "Nome muito grande");
        auto lines = boxes.lines();
        ASSERT_EQ(lines.size(), 2u);
        EXPECT_EQ(lines[0], "Please, select\t36\tLinha 1\\nLinha 2");
        EXPECT_EQ(lines[1], "Alert\t48\tNome muito grande");
    }
    {
        zq::test::UnattendedBoxes boxes(7);
        EXPECT_EQ(__MsgYesNo(__INIT_CHARPTR("?"), nullptr), __INIT_BOOL(0));
        // A hook takes precedence and nothing is logged.
        zq_set_box_hook(recordingHook);
        hookAnswer = 6;
        EXPECT_EQ(__MsgYesNo(__INIT_CHARPTR("?"), nullptr), __INIT_BOOL(1));
        zq_set_box_hook(nullptr);
        EXPECT_EQ(boxes.lines().size(), 1u);
    }
    __EndGlobal();
}

TEST(BoxesDeathTest, LanguageBoxRejectsANonTextMessage) {
    zq::test::expectRuntimeError({"NumericMessage", [] { __MsgAlert(__INIT_DOUBLE(1), nullptr); }, "ARGUMENT ERROR!"});
}

TEST(ShowFreeMem, ReportsBalanceAndCounts) {
    __BeginGlobal();
    zq::test::UnattendedBoxes boxes;
    __SET_OBJECT(nullptr, __INIT_DOUBLE(1));
    ShowFreeMem();
    auto lines = boxes.lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].rfind("Alert\t48\tmalloc-free=", 0), 0u) << lines[0];
    EXPECT_NE(lines[0].find("\\npObj="), std::string::npos);
    EXPECT_NE(lines[0].find("\\nArrays=0\\nvElArray=0\\nLocked Stack=0"), std::string::npos) << lines[0];
    __EndGlobal();
}

} // namespace
