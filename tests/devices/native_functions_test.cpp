// Native functions by name: registration limits, the "U_" prefix, the raw flag, first wins.
#include "support/fresh_runtime.h"
#include "support/refused_call.h"
#include "zelqa.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zq::test {
namespace {

std::vector<std::string> calls; // "which:argument" per call

pObj record(const char *which, pObj arg) {
    calls.push_back(std::string(which) + ":" + (arg && arg->type == TYPE_CHAR ? arg->payload.c : "?"));
    return __INIT_CHARPTR(which);
}
pObj first(pObj arg) { return record("first", arg); }
pObj second(pObj arg) { return record("second", arg); }

pObj text(const char *s) { return __INIT_CHARPTR(s); }
pObj exec(const char *name, pObj raw = nullptr) {
    return ExecBlock(text(name), text("a1"), text("a2"), text("a3"), raw);
}
bool isFalse(pObj v) { return v == __INIT_BOOL(0); }

class NativeFunctions : public FreshRuntime {
protected:
    void SetUp() override {
        FreshRuntime::SetUp();
        calls.clear();
    }
};

// An empty registry or no name answers false before the name's type is looked at.
TEST_F(NativeFunctions, RegistrationTakesNamesOfOneToTwelveCharacters) {
    EXPECT_TRUE(isFalse(ExistBlock(__INIT_DOUBLE(1))));
    EXPECT_TRUE(isFalse(ExecBlock(__INIT_DOUBLE(1), nullptr, nullptr, nullptr, nullptr)));
    EXPECT_EQ(RegisterBlock(nullptr, first), 0);
    EXPECT_EQ(RegisterBlock("BALANCA", nullptr), 0);
    EXPECT_EQ(RegisterBlock("", first), 0);
    EXPECT_EQ(RegisterBlock("THIRTEENCHARS", first), 0);
    EXPECT_TRUE(isFalse(ExistBlock(text("BALANCA"))));
    EXPECT_EQ(RegisterBlock("B", first), 1);
    EXPECT_TRUE(isFalse(ExistBlock(nullptr)));
    EXPECT_TRUE(isFalse(ExecBlock(nullptr, nullptr, nullptr, nullptr, nullptr)));
    EXPECT_TRUE(calls.empty());
}

// Registration allows 12 characters, lookups only 11: a 12-character name is never found.
TEST_F(NativeFunctions, LookupsReachElevenCharactersOnly) {
    RegisterBlock("ELEVENCHARS", first);
    EXPECT_EQ(RegisterBlock("TWELVECHARSX", second), 1);
    EXPECT_EQ(ExistBlock(text("ELEVENCHARS")), __INIT_BOOL(1));
    EXPECT_STREQ(exec("ELEVENCHARS")->payload.c, "first");
    EXPECT_TRUE(isFalse(ExistBlock(text("TWELVECHARSX"))));
    EXPECT_TRUE(isFalse(exec("TWELVECHARSX")));
    EXPECT_EQ(calls, std::vector<std::string>{"first:a3"});
}

TEST_F(NativeFunctions, NamesCompareExactlyAndTheFirstOfTwoEqualNamesWins) {
    RegisterBlock("PESO", first);
    RegisterBlock("PESO", second);
    EXPECT_STREQ(exec("PESO")->payload.c, "first");
    EXPECT_TRUE(isFalse(ExistBlock(text("peso"))));
    EXPECT_TRUE(isFalse(ExistBlock(text("PES"))));
    EXPECT_TRUE(isFalse(exec("PESO ")));
    EXPECT_EQ(calls, std::vector<std::string>{"first:a3"});
}

// Raw true looks the name up as it stands, so only names registered as "U_..." are reached.
TEST_F(NativeFunctions, RawFlagDropsThePrefix) {
    RegisterBlock("PESO", first);
    RegisterBlock("U_TARA", second);
    EXPECT_TRUE(isFalse(exec("PESO", __INIT_BOOL(1))));
    EXPECT_STREQ(exec("U_PESO", __INIT_BOOL(1))->payload.c, "first");
    EXPECT_STREQ(exec("U_U_TARA", __INIT_BOOL(1))->payload.c, "second");
    EXPECT_STREQ(exec("U_TARA")->payload.c, "second");
    // Only a true logical is the raw flag.
    EXPECT_STREQ(exec("PESO", __INIT_BOOL(0))->payload.c, "first");
    EXPECT_STREQ(exec("PESO", __INIT_DOUBLE(1))->payload.c, "first");
    EXPECT_EQ(calls.size(), 5u);
}

const RefusedCall refused[] = {
    {"ExistBlockOfANumber", [] { RegisterBlock("PESO", first); ExistBlock(__INIT_DOUBLE(1)); }, "ARGUMENT ERROR!"},
    {"ExecBlockOfANumber",
     [] { RegisterBlock("PESO", first); ExecBlock(__INIT_DOUBLE(1), nullptr, nullptr, nullptr, nullptr); },
     "ARGUMENT ERROR!"},
};

class NativeFunctionsRefuse : public ::testing::TestWithParam<RefusedCall> {};
TEST_P(NativeFunctionsRefuse, WithArgumentError) { expectRuntimeError(GetParam()); }
INSTANTIATE_TEST_SUITE_P(Devices, NativeFunctionsRefuse, ::testing::ValuesIn(refused), refusedCallName);

} // namespace
} // namespace zq::test
