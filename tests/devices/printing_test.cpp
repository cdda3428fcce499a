// Printing into "pda.txt": the file's bytes, the information window's texts, the no-printer paths.
#include "platform/process.h"
#include "support/fresh_runtime.h"
#include "support/refused_call.h"
#include "support/unattended.h"
#include "zelqa.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace zq::test {
namespace {

std::vector<std::string> infoTexts; // "-" for each clearing of the window

void recordInfo(const char *text) { infoTexts.push_back(text ? text : "-"); }

pObj text(const char *s) { return __INIT_CHARPTR(s); }

std::string fileText(const std::filesystem::path &path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream all;
    all << in.rdbuf();
    return all.str();
}

class Printing : public FreshRuntime {
protected:
    void SetUp() override {
        FreshRuntime::SetUp();
        // One directory per test: tests run side by side in separate processes.
        dir_ = freshDirectory(std::string("printing-") + ::testing::UnitTest::GetInstance()->current_test_info()->name());
        platform::setEnvironment("ZELQA_PROGRAM_DIR", dir_.string().c_str());
        infoTexts.clear();
    }
    void TearDown() override {
        zq_set_info_hook(nullptr);
        platform::setEnvironment("ZELQA_PROGRAM_DIR", nullptr);
        FreshRuntime::TearDown();
    }
    std::string printed() const { return fileText(dir_ / "pda.txt"); }
    std::filesystem::path dir_;
};

// The texts go out as they stand: '%' is printed, never interpreted.
TEST_F(Printing, PrintFileHoldsExactlyTheTextsAndTheLogTheWindowsTexts) {
    UnattendedBoxes boxes;
    EXPECT_EQ(__IsPrintOn(), __INIT_BOOL(0));
    EXPECT_EQ(__LoadPrint(), __INIT_BOOL(1));
    EXPECT_EQ(__PrintSay(nullptr, nullptr, text("discarded")), __INIT_BOOL(1));
    EXPECT_EQ(__LoadPrint(), __INIT_BOOL(1)); // loading again starts the file afresh
    EXPECT_EQ(__IsPrintOn(), __INIT_BOOL(1));
    EXPECT_EQ(__PROW()->payload.d, 0.0);
    EXPECT_EQ(__PCOL()->payload.d, 0.0);
    EXPECT_EQ(__PrintSetFont(__INIT_DOUBLE(2), nullptr, nullptr, nullptr, __INIT_BOOL(1), nullptr, nullptr),
              __INIT_BOOL(1));
    EXPECT_EQ(__PrintSay(nullptr, nullptr, text("PEDIDO 12\r\n")), __INIT_BOOL(1));
    EXPECT_EQ(__PrintSay(__INIT_DOUBLE(5), __INIT_DOUBLE(10), text("100% pago %d %%\n")), __INIT_BOOL(1));
    EXPECT_EQ(__PrintSay(nullptr, nullptr, text("Pre\347o")), __INIT_BOOL(1));
    EXPECT_EQ(__UnLoadPrint(), __INIT_BOOL(1));
    EXPECT_EQ(__IsPrintOn(), __INIT_BOOL(0));
    EXPECT_EQ(printed(), "PEDIDO 12\r\n100% pago %d %%\nPre\347o");

    EXPECT_EQ(__UnLoadPrint(), __INIT_BOOL(1)); // no printer: the "Alert" box, and true
    const std::string info = "OO_Info32\t0\t";
    std::vector<std::string> expected = {info + "Iniciando Impressora", info + "Impressora Iniciada",
                                         info + "Enviando dados....",   info + "Iniciando Impressora",
                                         info + "Impressora Iniciada"};
    for (int i = 0; i < 3; ++i)
        expected.push_back(info + "Enviando dados....");
    for (const char *t : {"Aguarde....", "Finalizando", "Liberando Driver", "Impress\343o Finalizada", "Aguarde...."})
        expected.push_back(info + t);
    expected.push_back("Alert\t48\tImpressora n\343o conectada!");
    EXPECT_EQ(boxes.lines(), expected);
}

TEST_F(Printing, TheWindowClearsAfterEachTextSentAndAfterUnloading) {
    zq_set_info_hook(recordInfo);
    __LoadPrint();
    __PrintSay(nullptr, nullptr, text("x"));
    __UnLoadPrint();
    std::vector<std::string> expected = {"Iniciando Impressora", "Impressora Iniciada", "Enviando dados....", "-",
                                         "Aguarde....",          "Finalizando",         "Liberando Driver",
                                         "Impress\343o Finalizada", "-"};
    EXPECT_EQ(infoTexts, expected);
}

TEST_F(Printing, WithoutAPrinterTheCallsGiveNullReferencesAndWriteNothing) {
    zq_set_info_hook(recordInfo);
    EXPECT_EQ(__PrintSay(__INIT_CHARPTR("row"), __INIT_BOOL(1), __INIT_DOUBLE(3)), nullptr);
    EXPECT_EQ(__PrintSay(nullptr, nullptr, text("x")), nullptr);
    EXPECT_EQ(__PROW(), nullptr);
    EXPECT_EQ(__PCOL(), nullptr);
    EXPECT_EQ(__PrintSetFont(__INIT_DOUBLE(1), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), nullptr);
    EXPECT_TRUE(infoTexts.empty());
    EXPECT_FALSE(std::filesystem::exists(dir_ / "pda.txt"));
}

void ignoreInfo(const char *) {}

const RefusedCall refused[] = {
    {"LoadWhereNoFileCanBeMade",
     [] {
         zq_set_info_hook(ignoreInfo);
         platform::setEnvironment("ZELQA_PROGRAM_DIR", "/nonexistent/zelqa-printing");
         __LoadPrint();
     },
     "RUNTIME ERROR!"},
    {"SetFontWithTextSize",
     [] { __PrintSetFont(__INIT_CHARPTR("10"), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr); },
     "ARGUMENT ERROR!"},
    {"SetFontWithNumericBold",
     [] { __PrintSetFont(nullptr, nullptr, nullptr, nullptr, __INIT_DOUBLE(1), nullptr, nullptr); },
     "ARGUMENT ERROR!"},
    {"SayANumber",
     [] {
         zq_set_info_hook(ignoreInfo);
         platform::setEnvironment("ZELQA_PROGRAM_DIR", freshDirectory("printing-refused").string().c_str());
         __LoadPrint();
         __PrintSay(nullptr, nullptr, __INIT_DOUBLE(3));
     },
     "ARGUMENT ERROR!"},
};

class PrintingRefuses : public ::testing::TestWithParam<RefusedCall> {};
TEST_P(PrintingRefuses, WithRuntimeError) { expectRuntimeError(GetParam()); }
INSTANTIATE_TEST_SUITE_P(Devices, PrintingRefuses, ::testing::ValuesIn(refused), refusedCallName);

} // namespace
} // namespace zq::test
