// Opening and closing the serial port: OPENCOM and CLOSECOM.
#include "devices/arguments.h"
#include "devices/open_lines.h"
#include "platform/serial.h"
#include "runtime/context.h"
#include "runtime/raise.h"
#include "zelqa/devices.h"
#include "zelqa/values.h"

#include <cstdio>

using namespace zq::devices;
using zq::runtime::requireArgument;

namespace {

// COM<port>: the conventional name, so port 1 is COM1 (see docs/decisions.md).
intptr_t openLine(int32_t port, int16_t baud) {
    if (port < 1 || port > 255)
        return 0;
    char name[16];
    std::snprintf(name, sizeof name, "COM%d:", static_cast<int>(port));
    zq::platform::SerialLine line = zq::platform::openSerialLine(name);
    if (!line.valid())
        return 0;
    // Any failure from here on closes the line: the owner does it as it goes.
    intptr_t h = line.native();
    if (!zq::platform::configureSerialLine(h, baud) ||
        !zq::platform::escapeSerial(h, zq::platform::SerialEscape::SetDtr) ||
        !zq::platform::escapeSerial(h, zq::platform::SerialEscape::SetRts))
        return 0;
    return keepLine(std::move(line));
}

} // namespace

pObj OPENCOM(pObj port, pObj baud, pObj a, pObj b, pObj c) noexcept {
    for (pObj arg : {port, baud, a, b, c})
        requireArgument(isNumber(arg));
    intptr_t h = openLine(wholeNumber(port->payload.d), sixteenBitNumber(baud->payload.d));
    return __INIT_HANDLE(reinterpret_cast<void *>(h));
}

pObj CLOSECOM(pObj handle) noexcept {
    requireArgument(isHandle(handle));
    return zq::runtime::logical(closeLine(lineOf(handle)));
}
