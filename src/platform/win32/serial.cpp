// Serial lines on Windows: a communications device driven with the Win32 comm calls.
#include "platform/serial.h"

#include <windows.h>

namespace zq::platform {
namespace {

HANDLE handleOf(intptr_t line) { return reinterpret_cast<HANDLE>(line); }

} // namespace

bool SerialLine::close() noexcept {
    if (handle_ == -1)
        return true;
    BOOL ok = CloseHandle(handleOf(handle_));
    handle_ = -1;
    return ok != 0;
}

// \\.\COM<n> reaches every port number; the bare COM<n>: name only COM1 to COM9.
std::string serialDevicePath(const char *name) {
    int n = serialPortNumber(name);
    if (n == 0)
        return {};
    return "\\\\.\\COM" + std::to_string(n);
}

SerialLine openSerialLine(const char *name) {
    std::string path = serialDevicePath(name);
    if (path.empty()) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return SerialLine();
    }
    HANDLE h = CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (h == INVALID_HANDLE_VALUE)
        return SerialLine();
    return SerialLine(reinterpret_cast<intptr_t>(h));
}

bool configureSerialLine(intptr_t line, int16_t baud) {
    if (baud <= 0)
        return false; // no port has such a rate, though some drivers take it
    COMMTIMEOUTS timeouts{};
    timeouts.ReadIntervalTimeout = 65535;
    timeouts.WriteTotalTimeoutMultiplier = 10;
    timeouts.WriteTotalTimeoutConstant = 1000;
    if (!SetCommTimeouts(handleOf(line), &timeouts))
        return false;
    DCB dcb{};
    dcb.DCBlength = sizeof dcb;
    if (!GetCommState(handleOf(line), &dcb))
        return false;
    dcb.BaudRate = static_cast<DWORD>(baud);
    dcb.ByteSize = 8;
    dcb.Parity = NOPARITY;
    dcb.StopBits = ONESTOPBIT;
    dcb.fBinary = TRUE;
    dcb.fOutxCtsFlow = FALSE;
    dcb.fOutxDsrFlow = FALSE;
    dcb.fDsrSensitivity = FALSE;
    dcb.fOutX = FALSE;
    dcb.fInX = FALSE;
    dcb.fDtrControl = DTR_CONTROL_DISABLE;
    dcb.fRtsControl = RTS_CONTROL_DISABLE;
    dcb.fAbortOnError = FALSE;
    dcb.fTXContinueOnXoff = TRUE;
    return SetCommState(handleOf(line), &dcb) != 0;
}

namespace native {

bool escapeSerial(intptr_t line, SerialEscape what) {
    return EscapeCommFunction(handleOf(line), what == SerialEscape::SetDtr ? SETDTR : SETRTS) != 0;
}

bool serialModemStatus(intptr_t line, uint32_t &status) {
    DWORD bits = 0;
    if (!GetCommModemStatus(handleOf(line), &bits))
        return false;
    status = bits;
    return true;
}

bool waitSerialEvent(intptr_t line, uint32_t &events) {
    DWORD happened = 0;
    if (!WaitCommEvent(handleOf(line), &happened, nullptr))
        return false;
    events = happened;
    return true;
}

} // namespace native

bool setSerialEvents(intptr_t line, uint32_t mask) { return SetCommMask(handleOf(line), mask) != 0; }

int readSerialAvailable(intptr_t line, char *buffer, int max) {
    DWORD errors = 0;
    COMSTAT status{};
    if (!ClearCommError(handleOf(line), &errors, &status))
        return -1;
    DWORD wanted = status.cbInQue < static_cast<DWORD>(max) ? status.cbInQue : static_cast<DWORD>(max);
    DWORD got = 0;
    if (wanted && !ReadFile(handleOf(line), buffer, wanted, &got, nullptr))
        return -1;
    return static_cast<int>(got);
}

bool writeSerialByte(intptr_t line, char byte) {
    DWORD written = 0;
    return WriteFile(handleOf(line), &byte, 1, &written, nullptr) && written == 1;
}

} // namespace zq::platform
