// The system-neutral half of the serial seam: line names, the owner and the modem-line switch.
#include "platform/serial.h"

#include "platform/processes.h"

#include <cstdlib>
#include <cstring>

namespace zq::platform {
namespace {

const ModemLineSwitch *modemSwitch = nullptr;

} // namespace

int serialPortNumber(const char *name) {
    if (!name || std::strncmp(name, "COM", 3) != 0 || name[3] < '1' || name[3] > '9')
        return 0;
    char *end = nullptr;
    long n = std::strtol(name + 3, &end, 10);
    if (std::strcmp(end, ":") != 0 || n > 255)
        return 0;
    return static_cast<int>(n);
}

void switchModemLines(const ModemLineSwitch *modem) { modemSwitch = modem; }

bool escapeSerial(intptr_t line, SerialEscape what) {
    if (modemSwitch && modemSwitch->escape)
        return modemSwitch->escape(line, what);
    return native::escapeSerial(line, what);
}

bool serialModemStatus(intptr_t line, uint32_t &status) {
    if (modemSwitch && modemSwitch->status)
        return modemSwitch->status(line, status);
    return native::serialModemStatus(line, status);
}

bool waitSerialEvent(intptr_t line, uint32_t &events) {
    if (modemSwitch && modemSwitch->waitEvent)
        return modemSwitch->waitEvent(line, events);
    return native::waitSerialEvent(line, events);
}

void pauseSerialPoll() {
    if (!modemSwitch)
        sleepMilliseconds(1);
}

} // namespace zq::platform
