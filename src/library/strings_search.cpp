// Searching: __At finds the first occurrence of a needle, __Rat the last, both 1-based.
//
// __Rat counts overlapping occurrences, so the last one is simply the rightmost place the
// needle starts at: one search from the end finds it without walking every hit.
#include "library/arguments.h"
#include "zelqa/strings.h"
#include "zelqa/values.h"

using namespace zq::library;

pObj __At(pObj needle, pObj haystack) noexcept {
    std::string_view what = textOf(requireText(needle));
    std::string_view where = textOf(requireText(haystack));
    size_t at = where.find(what); // an empty needle is found at the start
    return __INIT_DOUBLE(at == std::string_view::npos ? 0 : static_cast<double>(at + 1));
}

pObj __Rat(pObj needle, pObj haystack) noexcept {
    std::string_view what = textOf(requireText(needle));
    std::string_view where = textOf(requireText(haystack));
    if (what.empty())
        return __INIT_DOUBLE(0); // an empty needle is never found from the end
    size_t at = where.rfind(what);
    return __INIT_DOUBLE(at == std::string_view::npos ? 0 : static_cast<double>(at + 1));
}
