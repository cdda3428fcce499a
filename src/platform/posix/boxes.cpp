// Message boxes on POSIX: asked at the terminal when someone is there, else reported on stderr.
#include "platform/boxes.h"

#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace zq::platform {
namespace {

constexpr unsigned kYesNoButtons = 4; // MB_YESNO in the style's low nibble

bool someoneAtTerminal() { return isatty(STDIN_FILENO) && isatty(STDERR_FILENO); }

} // namespace

int showMessageBox(void *, const char *caption, const char *text, unsigned style) {
    std::fprintf(stderr, "[%s] %s\n", caption, text);
    if (!someoneAtTerminal())
        return 0; // nobody to press a button: not confirmed
    bool yesNo = (style & 0xF) == kYesNoButtons;
    std::fputs(yesNo ? "(y/n) " : "(Enter) ", stderr);
    char answer[64] = {};
    if (!std::fgets(answer, sizeof answer, stdin))
        return 0;
    if (!yesNo)
        return 1;
    return (answer[0] == 'y' || answer[0] == 'Y') ? 6 : 7;
}

void repaintWindow(void *) {}

bool drawText(void *, const char *, int, int) { return false; }

} // namespace zq::platform
