// The serial port over a real line: bytes both ways, buffer and count rules, CTS pacing.
#include "devices/far_end.h"
#include "support/fresh_runtime.h"
#include "zelqa.h"

#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <optional>

namespace zq::test {
namespace {

bool standInEscape(intptr_t, platform::SerialEscape what) {
    if (what == platform::SerialEscape::SetRts && ModemStandIn::refuseRts)
        return false;
    (what == platform::SerialEscape::SetDtr ? ModemStandIn::dtrRaised : ModemStandIn::rtsRaised) = true;
    return true;
}

bool standInStatus(intptr_t, uint32_t &status) {
    ++ModemStandIn::statusReads;
    bool off = ModemStandIn::ctsOffPolls != 0;
    if (ModemStandIn::ctsOffPolls > 0)
        --ModemStandIn::ctsOffPolls;
    status = off ? platform::kModemDsr : platform::kModemCts | platform::kModemDsr;
    return true;
}

bool lineStillUp() {
    if (ModemStandIn::waitsBeforeFailure == 0)
        return false;
    if (ModemStandIn::waitsBeforeFailure > 0)
        --ModemStandIn::waitsBeforeFailure;
    return true;
}

// Reported waits never block, so a READCOM whose bytes never come would spin for ever:
// after this many the line counts as failed.
constexpr int64_t kMostReportedWaits = 200000;

bool reportedWait(intptr_t, uint32_t &events) {
    events = platform::kEventRxChar;
    return lineStillUp() && ++ModemStandIn::reportedWaits < kMostReportedWaits;
}

bool realWait(intptr_t line, uint32_t &events) {
    return lineStillUp() && platform::native::waitSerialEvent(line, events);
}

} // namespace

ModemStandIn::ModemStandIn(Waits waits) {
    ctsOffPolls = statusReads = reportedWaits = 0;
    waitsBeforeFailure = -1;
    dtrRaised = rtsRaised = refuseRts = false;
    switch_ = {standInEscape, standInStatus, waits == Waits::Reported ? reportedWait : realWait};
    platform::switchModemLines(&switch_);
}

ModemStandIn::~ModemStandIn() { platform::switchModemLines(nullptr); }

namespace {

// Boxes shown while a test runs, with the status reads made before each, answered in turn.
struct ShownBox {
    std::string line;
    int64_t statusReads;
};
std::vector<ShownBox> shown;
std::deque<int> answers;

int answeringHook(const char *caption, const char *text, unsigned style) {
    shown.push_back({std::string(caption) + "\t" + std::to_string(style) + "\t" + text, ModemStandIn::statusReads});
    int answer = answers.empty() ? 0 : answers.front();
    if (!answers.empty())
        answers.pop_front();
    return answer;
}

pObj number(double x) { return __INIT_DOUBLE(x); }

// A text value of exactly these bytes, NULs included.
pObj bytesValue(std::string_view bytes) {
    pObj v = __ALLOC_CHARPTR(static_cast<int32_t>(bytes.size()));
    std::memcpy(v->payload.c, bytes.data(), bytes.size());
    return v;
}

class SerialLine : public FreshRuntime {
protected:
    void SetUp() override {
        FreshRuntime::SetUp();
        std::string why;
        far_ = openFarEnd(why);
        if (!far_)
            GTEST_SKIP() << why;
        if (far_->needsModemStandIn())
            modem();
        shown.clear();
        answers.clear();
        zq_set_box_hook(answeringHook);
        line_ = open(9600);
        ASSERT_EQ(line_->type, static_cast<uint32_t>(TYPE_HANDLE));
        ASSERT_NE(line_->payload.p, nullptr);
        __LockStack(line_, __INIT_NUL());
    }
    void TearDown() override {
        zq_set_box_hook(nullptr);
        if (line_)
            CLOSECOM(line_);
        modem_.reset();
        FreshRuntime::TearDown();
    }
    pObj open(double baud) {
        return OPENCOM(number(far_->port()), number(baud), number(0), number(0), number(0));
    }
    ModemStandIn &modem() {
        if (!modem_)
            modem_.emplace(far_->needsModemStandIn() ? ModemStandIn::Waits::Reported : ModemStandIn::Waits::Real);
        return *modem_;
    }
    double write(std::string_view bytes, double count) { return WRITECOM(line_, bytesValue(bytes), number(count))->payload.d; }

    std::unique_ptr<FarEnd> far_;
    std::optional<ModemStandIn> modem_;
    pObj line_ = nullptr;
};

TEST_F(SerialLine, BytesCrossTheLineBothWaysUnchanged) {
    if (far_->needsModemStandIn()) {
        EXPECT_TRUE(ModemStandIn::dtrRaised);
        EXPECT_TRUE(ModemStandIn::rtsRaised);
    }
    const std::string sent("PESO?\r\n\0\x7f\xe9\xff", 11);
    EXPECT_EQ(write(sent, 11), 11.0);
    EXPECT_EQ(far_->receive(11), sent);

    const std::string reading("  12.345kg\r\n\0\xb0", 14);
    far_->send(reading);
    pObj buffer = __ALLOC_CHARPTR(20);
    EXPECT_EQ(READCOM(line_, buffer, number(14))->payload.d, 14.0);
    EXPECT_EQ(std::string(buffer->payload.c, 14), reading);
    EXPECT_EQ(buffer->payload.c[14], '\0');
    EXPECT_EQ(buffer->objLength, 15);

    EXPECT_EQ(CLOSECOM(line_), __INIT_BOOL(1));
    EXPECT_EQ(CLOSECOM(line_), __INIT_BOOL(0)); // closed once only
    line_ = nullptr;
    EXPECT_TRUE(shown.empty());
}

TEST_F(SerialLine, ALineOpensOnceAtATime) {
    if (!far_->opensExclusively())
        GTEST_SKIP() << "this system opens a line twice";
    EXPECT_EQ(open(9600)->payload.p, nullptr);
}

TEST_F(SerialLine, AFailureAfterOpeningClosesTheLineAgain) {
    EXPECT_EQ(CLOSECOM(line_), __INIT_BOOL(1));
    line_ = nullptr;
    modem();
    ModemStandIn::refuseRts = true;
    EXPECT_EQ(open(9600)->payload.p, nullptr);
    EXPECT_TRUE(ModemStandIn::dtrRaised);
    ModemStandIn::refuseRts = false;
    EXPECT_EQ(open(38400)->payload.p, nullptr); // taken as 16 bits, no rate is left of it
    line_ = open(9600); // the failures left the line free
    ASSERT_NE(line_->payload.p, nullptr);
    __LockStack(line_, __INIT_NUL());
}

TEST_F(SerialLine, ReadcomNeedsRoomForTheCountAndItsTerminator) {
    far_->send("ABCDE");
    struct Case {
        const char *buffer;
        double count;
    } refused[] = {{"abc", 5}, {"abcd", 5}, {"abcdef", 0}, {"abcdef", -3}};
    for (const Case &c : refused) {
        pObj buffer = __INIT_CHARPTR(c.buffer);
        EXPECT_EQ(READCOM(line_, buffer, number(c.count))->payload.d, 0.0) << c.buffer << " " << c.count;
        EXPECT_STREQ(buffer->payload.c, c.buffer);
    }
    // Nothing was taken from the line meanwhile.
    pObj buffer = __INIT_CHARPTR("abcdef");
    EXPECT_EQ(READCOM(line_, buffer, number(5))->payload.d, 5.0);
    EXPECT_STREQ(buffer->payload.c, "ABCDE");
}

TEST_F(SerialLine, WritecomSendsAtMostTheTextTakingTheCountAsSixteenBits) {
    struct Case {
        const char *text;
        double count;
        double result;
        const char *received;
    } cases[] = {
        {"ABCDEF", 3, 3, "ABC"},  {"GHI", 10, 3, "GHI"}, {"JKL", 0, 0, ""},
        {"MNO", -2, 0, ""},       {"PQR", 65538.9, 2, "PQ"}, {"STU", 65536, 0, ""},
    };
    std::string expected;
    for (const Case &c : cases) {
        EXPECT_EQ(write(c.text, c.count), c.result) << c.text;
        expected += c.received;
    }
    EXPECT_EQ(far_->receive(expected.size()), expected);
}

// CTS drops before the first byte of a call: bytes of an earlier call do not lengthen the
// stall, so it lasts 10000 polls; Retry gives 10000 more, and the line clears 350 into those.
TEST_F(SerialLine, StallTimesOutAndRetryWaitsAfresh) {
    modem();
    answers = {4}; // Retry
    EXPECT_EQ(write("ABC", 3), 3.0);
    ModemStandIn::statusReads = 0;
    ModemStandIn::ctsOffPolls = 10350;
    EXPECT_EQ(write("DEFGH", 5), 5.0);
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].line, "ERROR\t327685\tSending data timeout.");
    EXPECT_EQ(shown[0].statusReads, 10000);
    EXPECT_EQ(ModemStandIn::statusReads, 10350 + 5);
    EXPECT_EQ(far_->receive(8), "ABCDEFGH");
}

TEST_F(SerialLine, StallAllowanceGrowsWithTheBytesSentAndCancelGivesUp) {
    modem();
    answers = {4, 2}; // Retry, then Cancel
    // The stand-in turns CTS off after the third byte of this call.
    struct ThreeThenOff {
        static bool status(intptr_t, uint32_t &s) {
            ++ModemStandIn::statusReads;
            s = ModemStandIn::statusReads <= 3 ? platform::kModemCts : 0;
            return true;
        }
    };
    platform::ModemLineSwitch lines{standInEscape, ThreeThenOff::status, nullptr};
    platform::switchModemLines(&lines);
    EXPECT_EQ(write("ABCDE", 5), 0.0);
    platform::switchModemLines(nullptr);
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0].statusReads, 3 + 10300);
    EXPECT_EQ(shown[1].statusReads, 3 + 10300 + 10000);
    EXPECT_EQ(far_->receive(3), "ABC");
}

} // namespace
} // namespace zq::test
