// The information window: hook, unattended log, or the system's window of progress text.
#include "ui/info_window.h"

#include "platform/info_window.h"
#include "ui/box.h"
#include "zelqa/boxes.h"

namespace zq::ui {
namespace {

constexpr const char *kInfoCaption = "OO_Info32"; // the window class of the information window
zq_info_hook hook = nullptr;
void *window = nullptr;

} // namespace

void showInfo(const char *text) {
    if (hook) {
        hook(text);
        return;
    }
    appendToBoxLog(kInfoCaption, text, 0);
    if (!unattended())
        window = platform::showInfoWindow(window, text);
}

void clearInfo() {
    if (hook) {
        hook(nullptr);
        return;
    }
    platform::closeInfoWindow(window);
    window = nullptr;
}

} // namespace zq::ui

void zq_set_info_hook(zq_info_hook newHook) noexcept { zq::ui::hook = newHook; }
