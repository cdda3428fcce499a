// Serial lines: the calls the serial-port built-ins make to the operating system.
//
// A line is named as the language names it, "COM<n>:". On Windows the name opens the
// communications device \\.\COM<n> with CreateFileA and is driven with the comm calls
// (SetCommTimeouts, GetCommState, SetCommState, EscapeCommFunction, GetCommModemStatus,
// SetCommMask, WaitCommEvent). On POSIX it opens the terminal device in the environment
// variable ZELQA_COM<n> when that is set, else /dev/ttyS<n-1>, driven with termios, the
// modem-control ioctls and poll. Plain types only above this seam: a line is the system's
// handle or descriptor as an intptr_t, owned by one SerialLine.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace zq::platform {

// A move-only owner of one open serial line.
class SerialLine {
public:
    SerialLine() noexcept = default;
    explicit SerialLine(intptr_t handle) noexcept : handle_(handle) {}
    SerialLine(SerialLine &&other) noexcept : handle_(std::exchange(other.handle_, -1)) {}
    SerialLine &operator=(SerialLine &&other) noexcept {
        if (this != &other) {
            close();
            handle_ = std::exchange(other.handle_, -1);
        }
        return *this;
    }
    SerialLine(const SerialLine &) = delete;
    SerialLine &operator=(const SerialLine &) = delete;
    ~SerialLine() { close(); }

    bool valid() const noexcept { return handle_ != -1; }
    intptr_t native() const noexcept { return handle_; }
    bool close() noexcept; // false when the system refused; the owner is empty afterwards

private:
    intptr_t handle_ = -1; // system handle or descriptor; -1 = none
};

// The n of a line name "COM<n>:", n from 1 to 255; 0 for any other name.
int serialPortNumber(const char *name);
// The device path a line name stands for on this system; empty for a bad name.
std::string serialDevicePath(const char *name);

// Opens the line for reading and writing, not shared, existing devices only; an invalid
// owner on failure.
SerialLine openSerialLine(const char *name);

// Sets the time-outs (read interval 65535 ms, write 10 ms a byte plus 1000 ms), then the
// line: baud (false when the system has no such rate), 8 data bits, no parity, one stop
// bit, binary, no flow control of either kind, DTR and RTS left to escapeSerial.
bool configureSerialLine(intptr_t line, int16_t baud);

enum class SerialEscape { SetDtr, SetRts };
// Raises a modem-control output.
bool escapeSerial(intptr_t line, SerialEscape what);

// Modem status bits, as GetCommModemStatus gives them.
constexpr uint32_t kModemCts = 0x10, kModemDsr = 0x20, kModemRing = 0x40, kModemRlsd = 0x80;
// The modem input lines; false when they cannot be read.
bool serialModemStatus(intptr_t line, uint32_t &status);

// Line events, as SetCommMask and WaitCommEvent take and give them.
constexpr uint32_t kEventRxChar = 0x1, kEventCts = 0x8, kEventDsr = 0x10, kEventRlsd = 0x20, kEventRing = 0x100;
bool setSerialEvents(intptr_t line, uint32_t mask);
// Blocks until one of the events of the mask happens; false when the line failed (on
// POSIX also when the far end hung up). POSIX wakes for received bytes only.
bool waitSerialEvent(intptr_t line, uint32_t &events);

// Reads the bytes already received, at most max, without waiting; -1 on failure.
int readSerialAvailable(intptr_t line, char *buffer, int max);
// Sends one byte within the write time-out; false when it was not sent.
bool writeSerialByte(intptr_t line, char byte);

// The pause between two polls of a line that is not clear to send: 1 ms.
void pauseSerialPoll();

// Test-only switch standing in for the modem lines of a device that has none (a
// pseudo-terminal). While set, each non-null function answers its call instead of the
// line: raising DTR and RTS, the modem status, the event wait; and the pause between
// polls returns at once, so a stall runs by count, not by time. Reading and writing
// bytes always go to the line. Null restores the real calls.
struct ModemLineSwitch {
    bool (*escape)(intptr_t line, SerialEscape what);
    bool (*status)(intptr_t line, uint32_t &status);
    bool (*waitEvent)(intptr_t line, uint32_t &events);
};
void switchModemLines(const ModemLineSwitch *modem);

// The backends' own calls behind the switch.
namespace native {
bool escapeSerial(intptr_t line, SerialEscape what);
bool serialModemStatus(intptr_t line, uint32_t &status);
bool waitSerialEvent(intptr_t line, uint32_t &events);
} // namespace native

} // namespace zq::platform
