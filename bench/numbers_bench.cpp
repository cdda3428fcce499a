// Numbers and pictures: operations per second of __Str, __StrZero, NOROUND and __Transform
// with the pictures business screens use most.
#include "rate.h"
#include "zelqa.h"

#include <cstdio>
#include <functional>

namespace {

using zq::bench::rate;

pObj variable(pObj value) { return __SET_OBJECT(nullptr, value); }

void report(const char *what, double perSecond) {
    std::printf("%-44s %12.0f\n", what, perSecond);
    std::fflush(stdout);
}

} // namespace

int main() {
    __BeginGlobal();
    pObj total = variable(__INIT_DOUBLE(1234567.891)), negative = variable(__INIT_DOUBLE(-98765.4321));
    pObj ten = variable(__INIT_DOUBLE(10)), two = variable(__INIT_DOUBLE(2)), twelve = variable(__INIT_DOUBLE(12));
    pObj cpf = variable(__INIT_CHARPTR("11144477735")), name = variable(__INIT_CHARPTR("jose da silva"));
    pObj day = variable(__INIT_CHARPTR("11/23/06"));
    struct Picture {
        const char *picture;
        pObj value;
    } pictures[] = {
        {"@E 999,999,999.99", total},   {"@E 999,999.99", negative}, {"@E 9,999,999.9999", total},
        {"@R 999.999.999-99", cpf},     {"@!", name},                {"@D", day},
        {"@R 9999", total},
    };
    std::printf("%-44s %12s\n", "operations per second", "");
    report("__Str(x, 12, 2)", rate([&] { __Str(total, twelve, two); }));
    report("__Str(x)", rate([&] { __Str(total, nullptr, nullptr); }));
    report("__Str(x, 10, 2) negative", rate([&] { __Str(negative, ten, two); }));
    report("__StrZero(x, 12, 2)", rate([&] { __StrZero(total, twelve, two); }));
    report("NOROUND(x, 2)", rate([&] { NOROUND(total, two); }));
    for (const Picture &p : pictures) {
        pObj picture = variable(__INIT_CHARPTR(p.picture));
        char label[64];
        std::snprintf(label, sizeof label, "__Transform %s", p.picture);
        report(label, rate([&] { __Transform(p.value, picture); }));
    }
    __EndGlobal();
    return 0;
}
