// The information window on Windows: a topmost bordered popup of static text, centred.
#include "platform/info_window.h"

#include <windows.h>

namespace zq::platform {
namespace {

constexpr int kWidth = 240;
constexpr int kHeight = 64;

HWND makeWindow(const char *text) {
    int x = (GetSystemMetrics(SM_CXSCREEN) - kWidth) / 2;
    int y = (GetSystemMetrics(SM_CYSCREEN) - kHeight) / 2;
    return CreateWindowExA(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, "STATIC", text,
                           WS_POPUP | WS_BORDER | WS_VISIBLE | SS_CENTER | SS_CENTERIMAGE, x, y, kWidth,
                           kHeight, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
}

} // namespace

void *showInfoWindow(void *window, const char *text) {
    HWND hwnd = static_cast<HWND>(window);
    if (hwnd && IsWindow(hwnd))
        SetWindowTextA(hwnd, text);
    else
        hwnd = makeWindow(text);
    if (hwnd)
        UpdateWindow(hwnd); // painted now: the caller may not pump messages for a while
    return hwnd;
}

void closeInfoWindow(void *window) {
    if (window)
        DestroyWindow(static_cast<HWND>(window));
}

} // namespace zq::platform
