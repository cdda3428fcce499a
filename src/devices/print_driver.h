// The printer driver: six operations the printing built-ins call, in their fixed order.
#pragma once

#include <cstdint>
#include <cstdio>

namespace zq::devices {

struct PrintDriver {
    int16_t (*getRow)();                       // the printer's current row
    int16_t (*getColumn)();                    // the printer's current column
    void (*setFont)(int32_t n1, int32_t n2, int32_t n3, int32_t n4, int l1, int l2, int l3);
    void (*say)(std::FILE *printer, int16_t row, int16_t column, const char *text, int32_t length);
    std::FILE *(*open)();                      // null when the printer cannot be opened
    int (*close)(std::FILE *printer);          // 0 when closed
};

// The driver of this build: it prints into the file "pda.txt" beside the program,
// emptied when opened. Texts are written as they are, '%' included; row and column
// stay 0, and the font is not the file's concern.
const PrintDriver &printFileDriver();

} // namespace zq::devices
