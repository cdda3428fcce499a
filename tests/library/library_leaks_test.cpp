// Every built-in of the function library over a few thousand random texts: the run ends
// with the allocation balance it started with.
#include "library/library_support.h"
#include "runtime/memory.h"
#include "support/unattended.h"

#include <gtest/gtest.h>

#include <random>

using namespace zq::library_test;

namespace {

// Random texts of 0 to 40 bytes drawn from a small alphabet, so that searches hit,
// Latin-1 bytes and digits included.
std::string randomText(std::mt19937 &rng) {
    static const std::string alphabet = "ab ,.-09/:\xE9\xFF";
    std::string s(rng() % 41, ' ');
    for (char &c : s)
        c = alphabet[rng() % alphabet.size()];
    return s;
}

void everyBuiltIn(std::mt19937 &rng) {
    pObj s = text(randomText(rng)), u = text(randomText(rng)), v = text(randomText(rng));
    pObj n = num(static_cast<double>(rng() % 60) - 10 + (rng() % 2 ? 0.5 : 0));
    pObj m = num(static_cast<double>(rng() % 12) - 2);
    pObj day = __INIT_DATE(static_cast<double>(rng() % 2958466));
    __AllTrim(s), __LTrim(s), __RTrim(s), __Upper(s), __Lower(s), __Asc(s), __Chr(n);
    __At(u, s), __Rat(u, s), __Val(s), __Left(s, n), __Right(s, n), __SubStr(s, n, m);
    __PadR(s, n, nullptr), __Pad(s, n, u), __PadL(s, n, u), __PadC(s, n, u);
    __Replicate(u, m), __Space(num(rng() % 30));
    __StrTran(s, u, v, rng() % 2 ? m : nullptr, rng() % 2 ? n : nullptr);
    __Stuff(s, m, m, u);
    __Dtoc(day, nullptr), __Dtoc(day, u), __Dtos(day), __Ctod(s, nullptr), __Ctod(s, u);
    __IsValidDate(s, u), __Dow(day), __CDow(day), __CMonth(day), __Day(day), __Month(day);
    __Year(day), __JulianDate(day), __GenTMS(day), __ElapTime(s, u), __Time(), __Seconds(), __Date();
    if (rng() % 50 == 0)
        __Set_DateFormat(rng() % 2 ? text("dd/mm/yyyy") : u);
    static const char *pictures[] = {"@E 999,999.99", "@R 999-AX!", "@!", "@D", "@E 9.9999", "999"};
    pObj picture = text(pictures[rng() % 6]);
    __Str(n, m, m), __StrZero(n, nullptr, m), __Round(n, m), NOROUND(n, m);
    __Transform(s, picture), __Transform(n, picture), __Transform(day, picture), __Transform(s, u);
    __Abs(n), __Sqrt(n), __Exp(m), __Log(n), __Log_10(n), __POW(n, m), __Int(n), __Bin2I(s);
    __Len(s), __Type(s), __Empty(s), __Max(n, m), __Min(day, day), __If(1, s, u);
    __IsAlpha(s), __IsDigit(s), __IsUpper(s), __IsLower(s), __IsPrint(s), __ValidCPF(s), __ValidCGC(s);
}

TEST(LibraryLeaks, ARandomRunEndsWithTheBalanceItStartedWith) {
    zq::test::UnattendedBoxes boxes;
    const int32_t before = zq::runtime::allocationBalance();
    __BeginGlobal();
    std::mt19937 rng(12);
    for (int i = 0; i < 4000; ++i) {
        __begin_context();
        everyBuiltIn(rng);
        __end_context(nullptr);
    }
    __EndGlobal();
    EXPECT_EQ(zq::runtime::allocationBalance(), before);
    EXPECT_TRUE(boxes.lines().empty());
}

} // namespace
