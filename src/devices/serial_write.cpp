// Sending on the serial port: WRITECOM, paced by the far end's clear-to-send line.
//
// While CTS is off the byte waits, polled every millisecond. A stall may last 10000 polls
// plus 100 for every byte sent since the stall before, so a device that took a long run
// of bytes gets longer to digest them; then the user chooses between Retry (a fresh 10000
// polls) and Cancel.
#include "devices/arguments.h"
#include "devices/open_lines.h"
#include "platform/serial.h"
#include "platform/windows.h"
#include "runtime/raise.h"
#include "ui/box.h"
#include "zelqa/boxes.h"
#include "zelqa/devices.h"
#include "zelqa/values.h"

using namespace zq::devices;
using zq::runtime::requireArgument;

namespace {

constexpr unsigned kTopmostForeground = 0x40000 | 0x10000; // MB_TOPMOST | MB_SETFOREGROUND
constexpr unsigned kRetryCancel = 5;                       // MB_RETRYCANCEL
constexpr int kRetry = 4;                                  // IDRETRY
constexpr int32_t kStallPolls = 10000;
constexpr int32_t kPollsPerByteSent = 100;

bool clearToSend(intptr_t line) {
    uint32_t status = 0;
    return zq::platform::serialModemStatus(line, status) && (status & zq::platform::kModemCts);
}

// One stalled byte's wait; false when the user cancelled.
struct Stall {
    int32_t sentBefore = 0; // bytes sent since the previous stall
    int32_t allowance = 0;
    int32_t polls = 0;
    bool stalled = false;

    void sent() {
        stalled = false;
        ++sentBefore;
    }
    bool waitOnce() {
        if (!stalled) {
            stalled = true;
            allowance = kPollsPerByteSent * sentBefore;
            sentBefore = 0;
            polls = 0;
        }
        zq::platform::pauseSerialPoll();
        if (++polls < allowance + kStallPolls)
            return true;
        int answer = zq::ui::showBox(nullptr, "ERROR", "Sending data timeout.", kRetryCancel | kTopmostForeground);
        zq::platform::serveWindows(0);
        if (answer != kRetry)
            return false;
        polls = 0;
        allowance = 0;
        return true;
    }
};

int32_t send(intptr_t line, const char *bytes, int32_t count) {
    Stall stall;
    for (int32_t i = 0; i < count;) {
        if (!clearToSend(line)) {
            if (!stall.waitOnce())
                return 0;
            continue;
        }
        if (!zq::platform::writeSerialByte(line, bytes[i])) {
            zq::ui::showBox(nullptr, "ERROR", "Sending data failed.", kTopmostForeground);
            return 0;
        }
        stall.sent();
        ++i;
    }
    return count;
}

} // namespace

pObj WRITECOM(pObj handle, pObj text, pObj count) noexcept {
    requireArgument(isHandle(handle) && isText(text) && isNumber(count));
    int32_t n = sixteenBitNumber(count->payload.d);
    int32_t length = text->objLength > 0 ? text->objLength - 1 : 0;
    if (n > length)
        n = length; // never past the text
    intptr_t line = lineOf(handle);
    if (n <= 0 || !text->payload.c || !isOpenLine(line))
        return __INIT_DOUBLE(0);
    return __INIT_DOUBLE(send(line, text->payload.c, n));
}
