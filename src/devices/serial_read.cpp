// Receiving on the serial port: READCOM, which waits for line events and gathers bytes.
//
// By default the call comes back once the buffer holds the count. The language's first
// READCOM never came back on a valid line; zq_readcom_returns(0) keeps that behaviour
// for programs that were built around it: the call then waits on, dropping what arrives
// after the buffer is full, and comes back (with 0) only when the line fails.
#include "devices/arguments.h"
#include "devices/open_lines.h"
#include "platform/serial.h"
#include "runtime/raise.h"
#include "zelqa/devices.h"
#include "zelqa/values.h"

using namespace zq::devices;
using namespace zq::platform;
using zq::runtime::requireArgument;

namespace {

constexpr uint32_t kFirstMask = kEventRxChar | kEventCts | kEventDsr | kEventRlsd | kEventRing; // 313
constexpr uint32_t kLaterMask = kEventRxChar | kEventCts | kEventDsr | kEventRing;              // 281

bool returnsAtCount = true;

// Gathers bytes into buffer until it holds count (or for ever, see above); the bytes
// gathered, or -1 when the line failed first.
int32_t gather(intptr_t line, char *buffer, int32_t count) {
    if (!setSerialEvents(line, kFirstMask))
        return -1;
    int32_t index = 0;
    char overflow[64];
    for (;;) {
        uint32_t events = 0;
        if (!waitSerialEvent(line, events))
            return index > 0 && returnsAtCount ? index : -1;
        setSerialEvents(line, kLaterMask);
        if (events & kEventRxChar) {
            bool full = index >= count;
            int got = full ? readSerialAvailable(line, overflow, sizeof overflow)
                           : readSerialAvailable(line, buffer + index, count - index);
            if (got < 0)
                return index > 0 && returnsAtCount ? index : -1;
            if (!full)
                index += got;
        }
        uint32_t status = 0;
        serialModemStatus(line, status); // read as the line's owner expects; not used
        if (returnsAtCount && index >= count)
            return index;
    }
}

} // namespace

int zq_readcom_returns(int on) noexcept {
    int previous = returnsAtCount ? 1 : 0;
    returnsAtCount = on != 0;
    return previous;
}

pObj READCOM(pObj handle, pObj buffer, pObj count) noexcept {
    requireArgument(isHandle(handle) && isText(buffer) && isNumber(count));
    int32_t n = wholeNumber(count->payload.d);
    // Room for the count and the terminator behind it; a literal is never written.
    if (n <= 0 || buffer->objLength <= n || !buffer->payload.c || buffer->storageClass == CLASS_CONST)
        return __INIT_DOUBLE(0);
    intptr_t line = lineOf(handle);
    if (!isOpenLine(line))
        return __INIT_DOUBLE(0);
    int32_t got = gather(line, buffer->payload.c, n);
    if (got <= 0)
        return __INIT_DOUBLE(0);
    buffer->payload.c[got] = '\0';
    buffer->objLength = static_cast<int16_t>(got + 1);
    return __INIT_DOUBLE(got);
}
