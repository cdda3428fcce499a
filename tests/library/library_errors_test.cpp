// Arguments the date and string built-ins refuse: each call ends the run through the
// "Fatal Error" box with the error it names.
#include "library/library_support.h"
#include "support/refused_call.h"

#include <gtest/gtest.h>

using namespace zq::library_test;
using zq::test::RefusedCall;

namespace {

class LibraryDeathTest : public ::testing::TestWithParam<RefusedCall> {};

TEST_P(LibraryDeathTest, EndsTheRun) { zq::test::expectRuntimeError(GetParam()); }

constexpr const char *kArg = "ARGUMENT ERROR!";
constexpr const char *kMemory = "LOW MEMORY!";

pObj aDate() { return date(2006, 11, 23); }
pObj aText() { return text("abc"); }
pObj aNumber() { return num(1); }

INSTANTIATE_TEST_SUITE_P(
    Dates, LibraryDeathTest,
    ::testing::Values(
        RefusedCall{"CDowText", [] { __CDow(aText()); }, kArg},
        RefusedCall{"CDowNull", [] { __CDow(nullptr); }, kArg},
        RefusedCall{"CMonthNumber", [] { __CMonth(aNumber()); }, kArg},
        RefusedCall{"DayNull", [] { __Day(nullptr); }, kArg},
        RefusedCall{"MonthText", [] { __Month(aText()); }, kArg},
        RefusedCall{"YearNumber", [] { __Year(aNumber()); }, kArg},
        RefusedCall{"DtosText", [] { __Dtos(aText()); }, kArg},
        RefusedCall{"DtocNumber", [] { __Dtoc(aNumber(), nullptr); }, kArg},
        RefusedCall{"DtocNumberFormat", [] { __Dtoc(aDate(), aNumber()); }, kArg},
        RefusedCall{"JulianText", [] { __JulianDate(aText()); }, kArg},
        RefusedCall{"GenTMSText", [] { __GenTMS(aText()); }, kArg},
        RefusedCall{"CtodNull", [] { __Ctod(nullptr, nullptr); }, kArg},
        RefusedCall{"CtodDate", [] { __Ctod(aDate(), nullptr); }, kArg},
        RefusedCall{"CtodNumberFormat", [] { __Ctod(text("01/01/06"), aNumber()); }, kArg},
        RefusedCall{"IsValidNullFormat", [] { __IsValidDate(aText(), nullptr); }, kArg},
        RefusedCall{"IsValidNullText", [] { __IsValidDate(nullptr, aText()); }, kArg},
        RefusedCall{"IsValidNumber", [] { __IsValidDate(aNumber(), aText()); }, kArg},
        RefusedCall{"ElapTimeNumberEnd", [] { __ElapTime(aText(), aNumber()); }, kArg},
        RefusedCall{"ElapTimeNullStart", [] { __ElapTime(nullptr, aText()); }, kArg},
        RefusedCall{"AddTodNumber", [] { __AddTod(aNumber(), aNumber()); }, kArg},
        RefusedCall{"AddTodText", [] { __AddTod(aDate(), aText()); }, kArg},
        RefusedCall{"AddTodEmptyDate", [] { __AddTod(emptyDate(), aNumber()); }, kArg},
        RefusedCall{"SetDateFormatNumber", [] { __Set_DateFormat(aNumber()); }, kArg}),
    zq::test::refusedCallName);

INSTANTIATE_TEST_SUITE_P(
    Strings, LibraryDeathTest,
    ::testing::Values(
        RefusedCall{"AllTrimNull", [] { __AllTrim(nullptr); }, kArg},
        RefusedCall{"AllTrimNumber", [] { __AllTrim(aNumber()); }, kArg},
        RefusedCall{"LTrimNumber", [] { __LTrim(aNumber()); }, kArg},
        RefusedCall{"RTrimDate", [] { __RTrim(aDate()); }, kArg},
        RefusedCall{"UpperNumber", [] { __Upper(aNumber()); }, kArg},
        RefusedCall{"LowerDate", [] { __Lower(aDate()); }, kArg},
        RefusedCall{"AscNumber", [] { __Asc(aNumber()); }, kArg},
        RefusedCall{"ChrText", [] { __Chr(aText()); }, kArg},
        RefusedCall{"ChrLong", [] { __Chr(__INIT_LONG(65)); }, kArg},
        RefusedCall{"AtNumberNeedle", [] { __At(aNumber(), aText()); }, kArg},
        RefusedCall{"AtNullHaystack", [] { __At(aText(), nullptr); }, kArg},
        RefusedCall{"RatNumber", [] { __Rat(aText(), aNumber()); }, kArg},
        RefusedCall{"LeftNumberText", [] { __Left(aNumber(), aNumber()); }, kArg},
        RefusedCall{"LeftTextCount", [] { __Left(aText(), aText()); }, kArg},
        RefusedCall{"RightNullCount", [] { __Right(aText(), nullptr); }, kArg},
        RefusedCall{"SubStrNumber", [] { __SubStr(aNumber(), aNumber(), nullptr); }, kArg},
        RefusedCall{"SubStrTextStart", [] { __SubStr(aText(), aText(), nullptr); }, kArg},
        RefusedCall{"PadRNumber", [] { __PadR(aNumber(), aNumber(), nullptr); }, kArg},
        RefusedCall{"PadRTextWidth", [] { __PadR(aText(), aText(), nullptr); }, kArg},
        RefusedCall{"PadRNumberFill", [] { __PadR(aText(), num(9), aNumber()); }, kArg},
        RefusedCall{"PadLNullFill", [] { __PadL(aText(), num(9), nullptr); }, kArg},
        RefusedCall{"PadCNullFill", [] { __PadC(aText(), num(9), nullptr); }, kArg},
        RefusedCall{"ReplicateTextCount", [] { __Replicate(aText(), aText()); }, kArg},
        RefusedCall{"ReplicateNumber", [] { __Replicate(aNumber(), aNumber()); }, kArg},
        RefusedCall{"SpaceText", [] { __Space(aText()); }, kArg},
        RefusedCall{"StrTranNumberSearch", [] { __StrTran(aText(), aNumber(), aText(), nullptr, nullptr); }, kArg},
        RefusedCall{"StrTranNullWith", [] { __StrTran(aText(), aText(), nullptr, nullptr, nullptr); }, kArg},
        RefusedCall{"StrTranTextStart", [] { __StrTran(aText(), aText(), aText(), aText(), nullptr); }, kArg},
        RefusedCall{"StrTranTextCount", [] { __StrTran(aText(), aText(), aText(), nullptr, aText()); }, kArg},
        RefusedCall{"StuffNumber", [] { __Stuff(aNumber(), aNumber(), aNumber(), aText()); }, kArg},
        RefusedCall{"StuffTextStart", [] { __Stuff(aText(), aText(), aNumber(), aText()); }, kArg},
        RefusedCall{"StuffTextDelete", [] { __Stuff(aText(), aNumber(), aText(), aText()); }, kArg},
        RefusedCall{"StuffNumberInsert", [] { __Stuff(aText(), aNumber(), aNumber(), aNumber()); }, kArg},
        RefusedCall{"SpaceNegative", [] { __Space(num(-1)); }, kMemory},
        RefusedCall{"SpaceTooLong", [] { __Space(num(40000)); }, kMemory},
        RefusedCall{"ReplicateTooLong", [] { __Replicate(aText(), num(1e12)); }, kMemory},
        RefusedCall{"PadLTooLong", [] { __PadL(aText(), num(5e9), text("xy")); }, kMemory},
        RefusedCall{"StrTranTooLong", [] {
            __StrTran(__Replicate(aText(), num(10000)), text("a"), __Space(num(100)), nullptr, nullptr);
        }, kMemory}),
    zq::test::refusedCallName);

} // namespace

INSTANTIATE_TEST_SUITE_P(
    NumbersAndMath, LibraryDeathTest,
    ::testing::Values(
        RefusedCall{"StrText", [] { __Str(aText(), nullptr, nullptr); }, kArg},
        RefusedCall{"StrNull", [] { __Str(nullptr, nullptr, nullptr); }, kArg},
        RefusedCall{"StrTextLength", [] { __Str(aNumber(), aText(), nullptr); }, kArg},
        RefusedCall{"StrZeroDate", [] { __StrZero(aDate(), nullptr, nullptr); }, kArg},
        RefusedCall{"StrZeroTextDecimals", [] { __StrZero(aNumber(), nullptr, aText()); }, kArg},
        RefusedCall{"StrTooManyDecimals", [] { __Str(aNumber(), nullptr, num(40000)); }, kMemory},
        RefusedCall{"StrTooWide", [] { __Str(aNumber(), num(1e9), nullptr); }, kMemory},
        RefusedCall{"RoundText", [] { __Round(aText(), aNumber()); }, kArg},
        RefusedCall{"RoundNullDecimals", [] { __Round(aNumber(), nullptr); }, kArg},
        RefusedCall{"NoRoundText", [] { NOROUND(aNumber(), aText()); }, kArg},
        RefusedCall{"TransformNumberPicture", [] { __Transform(aText(), aNumber()); }, kArg},
        RefusedCall{"TransformNullPicture", [] { __Transform(aText(), nullptr); }, kArg},
        RefusedCall{"PictureSizeText", [] { __PictureSize(aText()); }, kArg},
        RefusedCall{"AbsText", [] { __Abs(aText()); }, kArg},
        RefusedCall{"SqrtNull", [] { __Sqrt(nullptr); }, kArg},
        RefusedCall{"ExpDate", [] { __Exp(aDate()); }, kArg},
        RefusedCall{"LogText", [] { __Log(aText()); }, kArg},
        RefusedCall{"Log10Text", [] { __Log_10(aText()); }, kArg},
        RefusedCall{"PowText", [] { __POW(aNumber(), aText()); }, kArg},
        RefusedCall{"IntText", [] { __Int(aText()); }, kArg},
        RefusedCall{"FmodZero", [] { __FMOD(aNumber(), num(0)); }, kArg},
        RefusedCall{"FmodText", [] { __FMOD(aText(), aNumber()); }, kArg},
        RefusedCall{"Bin2INull", [] { __Bin2I(nullptr); }, kArg},
        RefusedCall{"LenNumber", [] { __Len(aNumber()); }, kArg},
        RefusedCall{"LenNull", [] { __Len(nullptr); }, kArg},
        RefusedCall{"TypeNull", [] { __Type(nullptr); }, kArg},
        RefusedCall{"EmptyNull", [] { __Empty(nullptr); }, kArg},
        RefusedCall{"IfMixedTypes", [] { __If(1, aNumber(), aText()); }, kArg},
        RefusedCall{"MaxTexts", [] { __Max(aText(), aText()); }, kArg},
        RefusedCall{"MinNumberDate", [] { __Min(aNumber(), aDate()); }, kArg},
        RefusedCall{"IsAlphaNumber", [] { __IsAlpha(aNumber()); }, kArg},
        RefusedCall{"IsDigitNull", [] { __IsDigit(nullptr); }, kArg},
        RefusedCall{"IsUpperDate", [] { __IsUpper(aDate()); }, kArg},
        RefusedCall{"IsLowerNumber", [] { __IsLower(aNumber()); }, kArg},
        RefusedCall{"IsPrintNull", [] { __IsPrint(nullptr); }, kArg},
        RefusedCall{"ValidCPFNumber", [] { __ValidCPF(aNumber()); }, kArg},
        RefusedCall{"ValidCGCNull", [] { __ValidCGC(nullptr); }, kArg},
        RefusedCall{"FonetizarNumberText", [] { __Fonetizar(aText(), aNumber()); }, kArg},
        RefusedCall{"FonetizarNullMode", [] { __Fonetizar(nullptr, aText()); }, kArg}),
    zq::test::refusedCallName);
