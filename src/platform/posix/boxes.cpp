// Message boxes on POSIX: asked at the terminal when someone is there, else reported on stderr.
#include "platform/boxes.h"

#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace zq::platform {
namespace {

constexpr unsigned kYesNoButtons = 4;       // MB_YESNO in the style's low nibble
constexpr unsigned kRetryCancelButtons = 5; // MB_RETRYCANCEL

bool someoneAtTerminal() { return isatty(STDIN_FILENO) && isatty(STDERR_FILENO); }

} // namespace

int showMessageBox(void *, const char *caption, const char *text, unsigned style) {
    std::fprintf(stderr, "[%s] %s\n", caption, text);
    if (!someoneAtTerminal())
        return 0; // nobody to press a button: not confirmed
    unsigned buttons = style & 0xF;
    bool yesNo = buttons == kYesNoButtons;
    bool retryCancel = buttons == kRetryCancelButtons;
    std::fputs(yesNo ? "(y/n) " : retryCancel ? "(r: retry, c: cancel) " : "(Enter) ", stderr);
    char answer[64] = {};
    if (!std::fgets(answer, sizeof answer, stdin))
        return 0;
    char first = answer[0];
    if (yesNo)
        return (first == 'y' || first == 'Y') ? 6 : 7;
    if (retryCancel)
        return (first == 'r' || first == 'R') ? 4 : 2;
    return 1;
}

void repaintWindow(void *) {}

bool drawText(void *, const char *, int, int) { return false; }

} // namespace zq::platform
