// Dates and strings: operations per second of each string built-in on texts of 10, 100
// and 10 000 bytes, and of __Ctod and __Dtoc. A built-in whose time grows with the square
// of the text shows it as a falling rate per byte from 100 to 10 000 bytes.
#include "rate.h"
#include "zelqa.h"

#include <cstdio>
#include <functional>
#include <string>

namespace {

using zq::bench::rate;

// A variable holding a text of n bytes: words, spaces and Latin-1 letters; every third
// byte is 'a', so searches for "a" have many hits.
pObj variableText(size_t n) {
    static const std::string pattern = "ab \xE9" "ac,ad.\xC9" "a";
    std::string s;
    while (s.size() < n)
        s += pattern;
    s.resize(n);
    return __SET_OBJECT(nullptr, __INIT_CHARPTR(s.c_str()));
}

pObj variable(pObj value) { return __SET_OBJECT(nullptr, value); }

struct Row {
    const char *name;
    std::function<void(pObj s, pObj n, pObj half)> call;
};

} // namespace

int main() {
    __BeginGlobal();
    pObj a = variable(__INIT_CHARPTR("a")), dash = variable(__INIT_CHARPTR("--"));
    pObj fill = variable(__INIT_CHARPTR(" "));
    pObj three = variable(__INIT_DOUBLE(3)), minusOne = variable(__INIT_DOUBLE(-1));
    const Row rows[] = {
        {"__AllTrim", [](pObj s, pObj, pObj) { __AllTrim(s); }},
        {"__LTrim", [](pObj s, pObj, pObj) { __LTrim(s); }},
        {"__RTrim", [](pObj s, pObj, pObj) { __RTrim(s); }},
        {"__Upper", [](pObj s, pObj, pObj) { __Upper(s); }},
        {"__Lower", [](pObj s, pObj, pObj) { __Lower(s); }},
        {"__Asc", [](pObj s, pObj, pObj) { __Asc(s); }},
        {"__At (absent needle)", [=](pObj s, pObj, pObj) { __At(dash, s); }},
        {"__Rat (needle a, many hits)", [=](pObj s, pObj, pObj) { __Rat(a, s); }},
        {"__Val", [](pObj s, pObj, pObj) { __Val(s); }},
        {"__Chr", [=](pObj, pObj, pObj) { __Chr(three); }},
        {"__Left (half)", [](pObj s, pObj, pObj half) { __Left(s, half); }},
        {"__Right (half)", [](pObj s, pObj, pObj half) { __Right(s, half); }},
        {"__SubStr (from the middle)", [](pObj s, pObj, pObj half) { __SubStr(s, half, nullptr); }},
        {"__PadR (to 2n)", [](pObj s, pObj n, pObj) { __PadR(s, n, nullptr); }},
        {"__PadL (to 2n)", [=](pObj s, pObj n, pObj) { __PadL(s, n, fill); }},
        {"__PadC (to 2n)", [=](pObj s, pObj n, pObj) { __PadC(s, n, fill); }},
        {"__Replicate (text a, n copies)", [=](pObj, pObj, pObj half) { __Replicate(a, half); }},
        {"__Space (n)", [](pObj, pObj, pObj half) { __Space(half); }},
        {"__StrTran (a -> --, every hit)", [=](pObj s, pObj, pObj) { __StrTran(s, a, dash, nullptr, nullptr); }},
        {"__StrTran (a -> --, first hit)", [=](pObj s, pObj, pObj) { __StrTran(s, a, dash, nullptr, minusOne); }},
        {"__Stuff (middle, delete 3)", [=](pObj s, pObj, pObj half) { __Stuff(s, half, three, dash); }},
    };
    const size_t sizes[] = {10, 100, 10000};
    pObj texts[3], widths[3], halves[3];
    for (int i = 0; i < 3; ++i) {
        texts[i] = variableText(sizes[i]);
        widths[i] = variable(__INIT_DOUBLE(2.0 * sizes[i]));
        halves[i] = variable(__INIT_DOUBLE(sizes[i] / 2.0));
    }
    std::printf("%-34s %14s %14s %14s %14s\n", "operations per second", "10 bytes", "100 bytes", "10000 bytes",
                "MB/s at 10000");
    for (const Row &row : rows) {
        double r[3];
        for (int i = 0; i < 3; ++i)
            r[i] = rate([&] { row.call(texts[i], widths[i], halves[i]); });
        std::printf("%-34s %14.0f %14.0f %14.0f %14.1f\n", row.name, r[0], r[1], r[2], r[2] * 10000 / 1e6);
        std::fflush(stdout);
    }
    pObj day = variable(__INIT_DATE(__EncodeDate(2006, 11, 23)));
    pObj format = variable(__INIT_CHARPTR("dd/mm/yyyy"));
    pObj printed = variable(__INIT_CHARPTR("23/11/2006"));
    std::printf("%-34s %14.0f\n", "__Dtoc (dd/mm/yyyy)", rate([&] { __Dtoc(day, format); }));
    std::printf("%-34s %14.0f\n", "__Dtoc (setting)", rate([&] { __Dtoc(day, nullptr); }));
    std::printf("%-34s %14.0f\n", "__Ctod (dd/mm/yyyy)", rate([&] { __Ctod(printed, format); }));
    __EndGlobal();
    return 0;
}
