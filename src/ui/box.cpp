// Showing a box: hook, unattended answer or real box; the box flags; the repaint afterwards.
#include "ui/box.h"

#include "platform/boxes.h"
#include "zelqa/boxes.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace zq::ui {
namespace {

zq_box_hook hook = nullptr;
int boxOpen = 0;
int swallowNextKey = 0;
std::array<void *, 32> activeWindows{}; // activation stack; the top is the active window
int activeDepth = 0;

// The number in ZELQA_BOX_ANSWER, if it holds one.
bool unattendedAnswer(int &answer) {
    const char *value = std::getenv("ZELQA_BOX_ANSWER");
    if (!value || !*value)
        return false;
    char *end = nullptr;
    long n = std::strtol(value, &end, 10);
    if (*end != '\0')
        return false;
    answer = static_cast<int>(n);
    return true;
}

} // namespace

void appendToBoxLog(const char *caption, const char *text, unsigned style) {
    const char *path = std::getenv("ZELQA_BOX_LOG");
    if (!path || !*path)
        return;
    std::string line = std::string(caption) + '\t' + std::to_string(style) + '\t';
    for (const char *p = text; *p; ++p) {
        if (*p == '\n')
            line += "\\n";
        else if (*p != '\r')
            line += *p;
    }
    line += '\n';
    if (FILE *f = std::fopen(path, "ab")) {
        std::fwrite(line.data(), 1, line.size(), f);
        std::fclose(f);
    }
}

bool unattended() {
    int answer = 0;
    return unattendedAnswer(answer);
}

void *activeWindow() { return activeDepth > 0 ? activeWindows[activeDepth - 1] : nullptr; }

int showBox(void *owner, const char *caption, const char *text, unsigned style) {
    swallowNextKey = 1;
    boxOpen = 1;
    int answer = 0;
    if (hook) {
        answer = hook(caption, text, style);
    } else {
        appendToBoxLog(caption, text, style);
        if (!unattendedAnswer(answer))
            answer = platform::showMessageBox(owner, caption, text, style);
    }
    boxOpen = 0;
    if (void *window = activeWindow())
        platform::repaintWindow(window);
    return answer;
}

} // namespace zq::ui

using namespace zq::ui;

void zq_set_box_hook(zq_box_hook newHook) noexcept { hook = newHook; }

int zq_box_open(void) noexcept { return boxOpen; }

int zq_take_swallowed_key(void) noexcept {
    int swallowed = swallowNextKey;
    swallowNextKey = 0;
    return swallowed;
}

void __ActivateWin(void *window) noexcept {
    boxOpen = 0;
    swallowNextKey = 0;
    if (activeDepth < static_cast<int>(activeWindows.size()))
        activeWindows[activeDepth++] = window;
    else
        activeWindows[activeDepth - 1] = window;
}

void __CloseDialog(void) noexcept {
    if (activeDepth > 0)
        --activeDepth;
}
