// The 256-entry character class table, built once at compile time.
#include "library/char_classes.h"


namespace zq::library {

namespace {

constexpr std::array<uint8_t, 256> makeTable() {
    std::array<uint8_t, 256> table{};
    for (int c = 'A'; c <= 'Z'; ++c)
        table[c] = kUpper;
    for (int c = 'a'; c <= 'z'; ++c)
        table[c] = kLower;
    for (int c = '0'; c <= '9'; ++c)
        table[c] = kDigit;
    for (int c = '!'; c <= '~'; ++c)
        if (table[c] == 0)
            table[c] = kPunct;
    table[' '] = kBlank;
    return table;
}

} // namespace

const std::array<uint8_t, 256> kCharClasses = makeTable();

} // namespace zq::library
