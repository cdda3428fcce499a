// Number truncation and text results for the built-in functions.
#include "library/arguments.h"

#include "zelqa/errors.h"
#include "zelqa/values.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace zq::library {

int32_t truncated(double x) {
    if (std::isnan(x))
        return 0;
    if (x >= 2147483647.0)
        return INT32_MAX;
    if (x <= -2147483648.0)
        return INT32_MIN;
    return static_cast<int32_t>(x);
}

pObj newText(int64_t n) {
    if (n < 0 || n > INT32_MAX)
        runtime::raiseError(ZQ_ERR_LOW_MEMORY);
    return __ALLOC_CHARPTR(static_cast<int32_t>(n));
}

pObj freshText(std::string_view bytes) {
    pObj t = newText(static_cast<int64_t>(bytes.size()));
    if (!bytes.empty())
        std::memcpy(t->payload.c, bytes.data(), bytes.size());
    return t;
}

void fillWithCopies(char *out, std::string_view unit, size_t total) {
    size_t done = std::min(unit.size(), total);
    std::memcpy(out, unit.data(), done);
    while (done < total) {
        size_t n = std::min(done, total - done);
        std::memcpy(out + done, out, n);
        done += n;
    }
}

} // namespace zq::library
