// The far end on Linux (a pseudo-terminal's master), and what only a hang-up can show.
#include "devices/far_end.h"
#include "platform/process.h"
#include "support/fresh_runtime.h"
#include "support/unattended.h"
#include "zelqa.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstring>

namespace zq::test {
namespace {

constexpr int kPort = 9;
constexpr int kPatienceMs = 10000; // a safety net against a hung test, never a measure

class PseudoTerminal : public FarEnd {
public:
    explicit PseudoTerminal(int master) : master_(master) {
        platform::setEnvironment("ZELQA_COM9", ptsname(master));
    }
    ~PseudoTerminal() override {
        hangUp();
        platform::setEnvironment("ZELQA_COM9", nullptr);
    }
    int port() const override { return kPort; }
    void send(std::string_view bytes) override {
        ASSERT_EQ(write(master_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    std::string receive(size_t n) override {
        std::string got;
        while (got.size() < n) {
            pollfd p{master_, POLLIN, 0};
            if (poll(&p, 1, kPatienceMs) != 1)
                break;
            char buffer[256];
            ssize_t r = read(master_, buffer, std::min(sizeof buffer, n - got.size()));
            if (r <= 0)
                break;
            got.append(buffer, static_cast<size_t>(r));
        }
        return got;
    }
    bool needsModemStandIn() const override { return false; }
    bool opensExclusively() const override { return true; }
    void hangUp() {
        if (master_ >= 0)
            close(master_);
        master_ = -1;
    }

private:
    int master_;
};

} // namespace

std::unique_ptr<FarEnd> openFarEnd(std::string &why) {
    int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) {
        why = std::string("no pseudo-terminal: ") + std::strerror(errno);
        return nullptr;
    }
    return std::make_unique<PseudoTerminal>(master);
}

namespace {

class OpenPseudoTerminal : public FreshRuntime {
protected:
    void SetUp() override {
        FreshRuntime::SetUp();
        std::string why;
        far_ = openFarEnd(why);
        ASSERT_TRUE(far_) << why;
        line_ = OPENCOM(__INIT_DOUBLE(kPort), __INIT_DOUBLE(9600), __INIT_DOUBLE(0), __INIT_DOUBLE(0), __INIT_DOUBLE(0));
        ASSERT_NE(line_->payload.p, nullptr);
        __LockStack(line_, __INIT_NUL());
    }
    void TearDown() override {
        CLOSECOM(line_);
        FreshRuntime::TearDown();
    }
    PseudoTerminal &far() { return static_cast<PseudoTerminal &>(*far_); }
    std::unique_ptr<FarEnd> far_;
    pObj line_ = nullptr;
};

// A hung-up line cannot tell its modem status either (it would stall): CTS is stood in for.
TEST_F(OpenPseudoTerminal, WritecomShowsSendingDataFailedAndReturnsZero) {
    UnattendedBoxes boxes;
    ModemStandIn modem(ModemStandIn::Waits::Real);
    far().hangUp();
    EXPECT_EQ(WRITECOM(line_, __INIT_CHARPTR("P"), __INIT_DOUBLE(1))->payload.d, 0.0);
    EXPECT_EQ(boxes.lines(), std::vector<std::string>{"ERROR\t327680\tSending data failed."});
}

// Waits until the line's own descriptor holds n received bytes, so a test knows what
// the next event wait will find.
void awaitReceived(pObj line, int n) {
    int fd = static_cast<int>(reinterpret_cast<intptr_t>(line->payload.p));
    for (int waited = 0, pending = 0; waited < kPatienceMs; ++waited) {
        if (ioctl(fd, FIONREAD, &pending) == 0 && pending >= n)
            return;
        usleep(1000);
    }
    FAIL() << "the bytes never reached the line";
}

TEST_F(OpenPseudoTerminal, WaitingReadcomKeepsWaitingPastTheCountUntilTheLineFails) {
    int before = zq_readcom_returns(0);
    far().send("12345");
    awaitReceived(line_, 5);
    ModemStandIn modem(ModemStandIn::Waits::Real);
    ModemStandIn::waitsBeforeFailure = 2; // the bytes, what follows the count, then failure
    pObj buffer = __INIT_CHARPTR("..........");
    EXPECT_EQ(READCOM(line_, buffer, __INIT_DOUBLE(3))->payload.d, 0.0);
    EXPECT_EQ(std::string(buffer->payload.c), "123.......");
    EXPECT_EQ(buffer->objLength, 11);
    zq_readcom_returns(before);
}

TEST_F(OpenPseudoTerminal, ReadcomThatReturnsGivesWhatCameBeforeTheLineFailed) {
    far().send("12");
    awaitReceived(line_, 2);
    ModemStandIn modem(ModemStandIn::Waits::Real);
    ModemStandIn::waitsBeforeFailure = 1;
    pObj buffer = __INIT_CHARPTR("..........");
    EXPECT_EQ(READCOM(line_, buffer, __INIT_DOUBLE(5))->payload.d, 2.0);
    EXPECT_STREQ(buffer->payload.c, "12");
    EXPECT_EQ(buffer->objLength, 3);
}

TEST(SerialDeviceNames, PortsMapToTheirVariableElseTheSerialDevices) {
    platform::setEnvironment("ZELQA_COM3", "/dev/ttyUSB0");
    EXPECT_EQ(platform::serialDevicePath("COM3:"), "/dev/ttyUSB0");
    platform::setEnvironment("ZELQA_COM3", nullptr);
    EXPECT_EQ(platform::serialDevicePath("COM3:"), "/dev/ttyS2");
    EXPECT_EQ(platform::serialDevicePath("COM12:"), "/dev/ttyS11");
    for (const char *bad : {"COM0:", "COM256:", "COM3", "LPT1:", "COM:", "COM1:x"})
        EXPECT_EQ(platform::serialDevicePath(bad), "") << bad;
}

} // namespace
} // namespace zq::test
