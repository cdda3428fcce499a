// The print-file driver: the printer's operations, writing into "pda.txt".
#include "devices/print_driver.h"

#include "platform/process.h"
#include "platform/processes.h"

#include <string>

namespace zq::devices {
namespace {

int16_t row = 0;    // nothing moves the print head in a file
int16_t column = 0;

int16_t getRow() { return row; }
int16_t getColumn() { return column; }

void setFont(int32_t, int32_t, int32_t, int32_t, int, int, int) {}

void say(std::FILE *printer, int16_t, int16_t, const char *text, int32_t length) {
    if (length > 0)
        std::fwrite(text, 1, static_cast<size_t>(length), printer);
    std::fflush(printer); // the file shows every text at once, even if the run ends abruptly
}

std::FILE *open() {
    std::string path = platform::programDirectory() + platform::directorySeparator() + "pda.txt";
    return platform::openPrivateStream(path.c_str(), "wb+");
}

int close(std::FILE *printer) { return printer ? std::fclose(printer) : 1; }

constexpr PrintDriver driver{getRow, getColumn, setFont, say, open, close};

} // namespace

const PrintDriver &printFileDriver() { return driver; }

} // namespace zq::devices
