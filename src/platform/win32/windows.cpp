// Windows of a class on Windows: RegisterClassA, CreateWindowA, FindWindowA.
#include "platform/windows.h"

#include <windows.h>

#include <cctype>
#include <string>

namespace zq::platform {

void *createNativeWindow(const char *className, const char *title) {
    if (!className || !*className)
        return nullptr;
    HINSTANCE instance = GetModuleHandleA(nullptr);
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = DefWindowProcA;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = className;
    // A class registered before, by us or by the user interface, is used as it is.
    if (!RegisterClassA(&windowClass) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS)
        return nullptr;
    return CreateWindowA(className, title ? title : "", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT,
                         CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, instance, nullptr);
}

void destroyNativeWindow(void *window) noexcept {
    if (window)
        DestroyWindow(static_cast<HWND>(window));
}

bool windowExists(const char *className) { return FindWindowA(className, nullptr) != nullptr; }

bool bringWindowForward(const char *className) {
    HWND window = FindWindowA(className, nullptr);
    if (!window)
        return false;
    SetForegroundWindow(reinterpret_cast<HWND>(reinterpret_cast<ULONG_PTR>(window) | 1));
    return true;
}

// A named mutex made or opened in one call: ERROR_ALREADY_EXISTS tells that another process
// made it first. The system drops it with the last process holding it.
bool claimInstance(const char *className, InstanceClaim &claim) {
    claim = InstanceClaim();
    if (!className || !*className)
        return true;
    std::string name = "zelqa-instance-";
    for (const char *p = className; *p; ++p)
        name += static_cast<char>(std::tolower(static_cast<unsigned char>(*p))); // classes ignore case
    HANDLE mutex = CreateMutexA(nullptr, FALSE, name.c_str());
    if (!mutex)
        return true;
    if (GetLastError() == ERROR_ALREADY_EXISTS) {
        CloseHandle(mutex);
        return false;
    }
    claim = InstanceClaim(mutex);
    return true;
}

void releaseNativeClaim(void *claim) noexcept {
    if (claim)
        CloseHandle(static_cast<HANDLE>(claim));
}

void serveWindows(uint32_t ms) {
    ULONGLONG deadline = GetTickCount64() + ms;
    for (;;) {
        MSG msg;
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
        ULONGLONG now = GetTickCount64();
        if (now >= deadline)
            return;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(deadline - now), QS_ALLINPUT);
    }
}

} // namespace zq::platform
