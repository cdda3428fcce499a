// The last system error on Windows: GetLastError and FormatMessageA.
#include "platform/system_error.h"

#include <windows.h>

namespace zq::platform {

uint32_t lastSystemError() { return GetLastError(); }

void setLastSystemError(uint32_t code) { SetLastError(code); }

std::string systemErrorText(uint32_t code) {
    char *buffer = nullptr;
    DWORD n = FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                 FORMAT_MESSAGE_IGNORE_INSERTS,
                             nullptr, code, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                             reinterpret_cast<char *>(&buffer), 0, nullptr);
    std::string text(buffer ? buffer : "", n);
    LocalFree(buffer);
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
        text.pop_back();
    return text;
}

} // namespace zq::platform
