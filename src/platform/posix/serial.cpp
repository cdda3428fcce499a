// Serial lines on POSIX: a terminal device set up with termios, modem lines through ioctls.
//
// A device without modem-control lines (a pseudo-terminal, say) refuses the modem ioctls
// with ENOTTY or EINVAL; such a line is taken as a three-wire line: raising DTR or RTS
// succeeds and the far end is always clear to send.
#include "platform/serial.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace zq::platform {
namespace {

constexpr int kWriteTimeoutMs = 10 + 1000; // 10 ms a byte plus 1000 ms, for one byte

int fd(intptr_t line) { return static_cast<int>(line); }

bool noModemLines() { return errno == ENOTTY || errno == EINVAL; }

speed_t speedOf(int16_t baud) {
    struct Rate {
        int16_t baud;
        speed_t speed;
    };
    static constexpr Rate rates[] = {{50, B50},     {75, B75},     {110, B110},   {134, B134},
                                     {150, B150},   {200, B200},   {300, B300},   {600, B600},
                                     {1200, B1200}, {1800, B1800}, {2400, B2400}, {4800, B4800},
                                     {9600, B9600}, {19200, B19200}};
    for (const Rate &r : rates)
        if (r.baud == baud)
            return r.speed;
    return B0;
}

// Keeps descriptors 0 to 2 free for the standard streams, so a line never reads as 0.
int aboveStandardStreams(int descriptor) {
    if (descriptor > 2)
        return descriptor;
    int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, 3);
    ::close(descriptor);
    return moved;
}

} // namespace

bool SerialLine::close() noexcept {
    if (handle_ == -1)
        return true;
    ioctl(fd(handle_), TIOCNXCL); // a pseudo-terminal keeps the mode after we let go
    int rc = ::close(fd(handle_));
    handle_ = -1;
    return rc == 0;
}

std::string serialDevicePath(const char *name) {
    int n = serialPortNumber(name);
    if (n == 0)
        return {};
    std::string variable = "ZELQA_COM" + std::to_string(n);
    if (const char *path = std::getenv(variable.c_str()); path && *path)
        return path;
    return "/dev/ttyS" + std::to_string(n - 1);
}

SerialLine openSerialLine(const char *name) {
    std::string path = serialDevicePath(name);
    if (path.empty()) {
        errno = ENOENT;
        return SerialLine();
    }
    int descriptor = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return SerialLine();
    SerialLine line(aboveStandardStreams(descriptor));
    if (!line.valid())
        return line;
    // Not shared: other programs of ours meet the lock, the rest the exclusive mode.
    if (!isatty(fd(line.native())) || flock(fd(line.native()), LOCK_EX | LOCK_NB) != 0 ||
        ioctl(fd(line.native()), TIOCEXCL) != 0)
        return SerialLine();
    return line;
}

bool configureSerialLine(intptr_t line, int16_t baud) {
    termios t{};
    speed_t speed = speedOf(baud);
    if (speed == B0 || tcgetattr(fd(line), &t) != 0)
        return false;
    cfmakeraw(&t);
    t.c_cflag &= ~(PARENB | CSTOPB | CSIZE | CRTSCTS);
    t.c_cflag |= CS8 | CREAD | CLOCAL;
    t.c_iflag &= ~(IXON | IXOFF | IXANY);
    t.c_cc[VMIN] = 0; // reads never wait: the event wait does
    t.c_cc[VTIME] = 0;
    if (cfsetispeed(&t, speed) != 0 || cfsetospeed(&t, speed) != 0)
        return false;
    return tcsetattr(fd(line), TCSANOW, &t) == 0;
}

namespace native {

bool escapeSerial(intptr_t line, SerialEscape what) {
    int bits = what == SerialEscape::SetDtr ? TIOCM_DTR : TIOCM_RTS;
    return ioctl(fd(line), TIOCMBIS, &bits) == 0 || noModemLines();
}

bool serialModemStatus(intptr_t line, uint32_t &status) {
    int bits = 0;
    if (ioctl(fd(line), TIOCMGET, &bits) != 0) {
        if (!noModemLines())
            return false;
        bits = TIOCM_CTS | TIOCM_DSR;
    }
    status = ((bits & TIOCM_CTS) ? kModemCts : 0) | ((bits & TIOCM_DSR) ? kModemDsr : 0) |
             ((bits & TIOCM_RI) ? kModemRing : 0) | ((bits & TIOCM_CD) ? kModemRlsd : 0);
    return true;
}

bool waitSerialEvent(intptr_t line, uint32_t &events) {
    pollfd p{fd(line), POLLIN, 0};
    int rc;
    do
        rc = poll(&p, 1, -1);
    while (rc < 0 && errno == EINTR);
    if (rc < 0 || !(p.revents & POLLIN))
        return false;
    events = kEventRxChar;
    return true;
}

} // namespace native

bool setSerialEvents(intptr_t line, uint32_t) { return fcntl(fd(line), F_GETFD) != -1; }

int readSerialAvailable(intptr_t line, char *buffer, int max) {
    ssize_t n = read(fd(line), buffer, static_cast<size_t>(max));
    if (n >= 0)
        return static_cast<int>(n);
    return errno == EAGAIN ? 0 : -1;
}

bool writeSerialByte(intptr_t line, char byte) {
    pollfd p{fd(line), POLLOUT, 0};
    if (poll(&p, 1, kWriteTimeoutMs) != 1 || !(p.revents & POLLOUT))
        return false;
    return write(fd(line), &byte, 1) == 1;
}

} // namespace zq::platform
