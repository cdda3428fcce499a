// The values handed to every built-in.
#include "test_values.h"

#include "zelqa.h"

#include <cmath>
#include <cstdlib>
#include <limits>

namespace zq::robustness {
namespace {

char pointedAt[64]; // what handles and non-null pointers point at

pObj longText() {
    static const std::string text(40000, 'x'); // longer than a 16-bit length field holds
    return __INIT_CHARPTR(text.c_str());
}

pObj nestedArray() {
    pObj inner = __CreateArray(__INIT_CHARPTR("in"), __INIT_DATE(45000), __INIT_NUL());
    return __CreateArray(__INIT_DOUBLE(1), inner, __INIT_NIL(), __CreateArray(__INIT_NUL()), __INIT_NUL());
}

pObj selfHoldingArray() {
    pObj a = __CreateArray(__INIT_DOUBLE(1), __INIT_CHARPTR("a"), __INIT_NUL());
    __AAdd(a, a);
    return a;
}

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

const std::vector<TestValue> all = {
    {"absent", [] { return pObj(nullptr); }},
    {"NIL", [] { return __INIT_NIL(); }},
    {"NUL", [] { return __INIT_NUL(); }},
    {".F.", [] { return __INIT_BOOL(0); }},
    {".T.", [] { return __INIT_BOOL(1); }},
    {"0", [] { return __INIT_DOUBLE(0); }},
    {"3", [] { return __INIT_DOUBLE(3); }},
    {"-1", [] { return __INIT_DOUBLE(-1); }},
    {"2.5", [] { return __INIT_DOUBLE(2.5); }},
    {"-0.5", [] { return __INIT_DOUBLE(-0.5); }},
    {"NaN", [] { return __INIT_DOUBLE(kNaN); }},
    {"+inf", [] { return __INIT_DOUBLE(kInf); }},
    {"-inf", [] { return __INIT_DOUBLE(-kInf); }},
    {"1e300", [] { return __INIT_DOUBLE(1e300); }},
    {"-1e300", [] { return __INIT_DOUBLE(-1e300); }},
    {"2^31", [] { return __INIT_DOUBLE(2147483648.0); }},
    {"1e-300", [] { return __INIT_DOUBLE(1e-300); }},
    {"long 7", [] { return __INIT_LONG(7); }},
    {"long min", [] { return __INIT_LONG(std::numeric_limits<int32_t>::min()); }},
    {"long max", [] { return __INIT_LONG(std::numeric_limits<int32_t>::max()); }},
    {"empty date", [] { return __INIT_DATE(0); }},
    {"date 45000", [] { return __INIT_DATE(45000); }},
    {"date 1e12", [] { return __INIT_DATE(1e12); }},
    {"date -1e9", [] { return __INIT_DATE(-1e9); }},
    {"date NaN", [] { return __INIT_DATE(kNaN); }},
    {"\"\"", [] { return __INIT_CHARPTR(""); }},
    {"\"abcdef\"", [] { return __INIT_CHARPTR("abcdef"); }},
    {"40000 bytes", longText},
    {"high bytes", [] { return __INIT_CHARPTR("\xe9\xff\x80\xc7 a,5"); }},
    {"\" 12.5 \"", [] { return __INIT_CHARPTR(" 12.5 "); }},
    {"\"12/31/1999\"", [] { return __INIT_CHARPTR("12/31/1999"); }},
    {"\"@R 999.99\"", [] { return __INIT_CHARPTR("@R 999.99"); }},
    {"\"%s%n\"", [] { return __INIT_CHARPTR("%s%n%d"); }},
    {"{}", [] { return __CreateArray(__INIT_NUL()); }},
    {"nested array", nestedArray},
    {"self-holding array", selfHoldingArray},
    {"handle", [] { return __INIT_HANDLE(pointedAt); }},
    {"null pointer", [] { return __INIT_VOIDPTR(nullptr); }},
    {"pointer", [] { return __INIT_VOIDPTR(pointedAt); }},
    {"text variable", [] { return __SET_OBJECT(nullptr, __INIT_CHARPTR("variable")); }},
    {"numeric variable", [] { return __SET_OBJECT(nullptr, __INIT_DOUBLE(12)); }},
};

} // namespace

const TestValue &testValue(const char *name) {
    for (const TestValue &v : all)
        if (std::string(v.name) == name)
            return v;
    std::abort(); // a name the list does not have: the driver's own mistake
}

const std::vector<TestValue> &testValues() { return all; }

const std::vector<TestValue> &typeRepresentatives() {
    static const std::vector<TestValue> some = [] {
        std::vector<TestValue> v;
        for (const char *name : {"absent", "NIL", "NUL", ".T.", "3", "NaN", "long 7", "date 45000", "empty date",
                                 "\"\"", "\"abcdef\"", "{}", "nested array", "handle", "null pointer"})
            v.push_back(testValue(name));
        return v;
    }();
    return some;
}

const std::vector<TestValue> &companions() {
    static const std::vector<TestValue> some = {testValue("absent"), testValue("3"), testValue("\"abcdef\""),
                                                testValue("nested array")};
    return some;
}

} // namespace zq::robustness
