// __Fonetizar with real libraries built beside the tests: one with the entry, one
// without, and a directory with none.
#include "library/library_support.h"
#include "library/phonetic.h"
#include "platform/process.h"
#include "support/installer_sandbox.h"

#include <gtest/gtest.h>

using namespace zq::library_test;

namespace {

class Phonetic : public zq::test::FreshRuntime {
protected:
    // The program directory where the library is looked for.
    static void libraryIn(const char *variant) {
        zq::library::forgetPhoneticLibrary();
        std::string dir = zq::test::appPath(std::string("phonetic/") + variant);
        zq::platform::setEnvironment("ZELQA_PROGRAM_DIR", dir.c_str());
    }
    void TearDown() override {
        zq::platform::setEnvironment("ZELQA_PROGRAM_DIR", nullptr);
        zq::library::forgetPhoneticLibrary();
        FreshRuntime::TearDown();
    }
};

TEST_F(Phonetic, TheLibrarysEntryMakesThePhoneticForm) {
    libraryIn("good");
    EXPECT_EQ(str(__Fonetizar(text("F"), text("jose da silva"))), "0JOSE DA SILVA");
    EXPECT_EQ(str(__Fonetizar(text("x"), text("ab\xE9"))), "1AB\xE9");
    EXPECT_EQ(str(__Fonetizar(text(""), text(""))), "1");
    // The library is kept: another directory changes nothing until it is forgotten.
    zq::platform::setEnvironment("ZELQA_PROGRAM_DIR", zq::test::appPath("phonetic/none").c_str());
    EXPECT_EQ(str(__Fonetizar(text("F"), text("a"))), "0A");
}

TEST_F(Phonetic, FailuresGiveNoPhoneticText) {
    libraryIn("good");
    pObj failed = __Fonetizar(text("F"), text("!abc")); // the routine reports failure
    EXPECT_EQ(str(failed), "");
    libraryIn("noentry");
    EXPECT_EQ(str(__Fonetizar(text("F"), text("abc"))), "");
    libraryIn("none");
    EXPECT_EQ(str(__Fonetizar(text("F"), text("abc"))), "");
}

} // namespace
