// The far end under wine: the other COM port of the pair tests/devices/null-modem joins.
#include "devices/far_end.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdlib>
#include <cstdio>

namespace zq::test {
namespace {

constexpr DWORD kPatienceMs = 10000; // a safety net against a hung test, never a measure

class OtherPort : public FarEnd {
public:
    OtherPort(int port, HANDLE other) : port_(port), far_(other) {}
    ~OtherPort() override { CloseHandle(far_); }
    int port() const override { return port_; }
    void send(std::string_view bytes) override {
        DWORD written = 0;
        ASSERT_TRUE(WriteFile(far_, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr))
            << "error " << GetLastError();
        ASSERT_EQ(written, bytes.size());
    }
    std::string receive(size_t n) override {
        std::string got(n, '\0');
        DWORD read = 0;
        if (!ReadFile(far_, got.data(), static_cast<DWORD>(n), &read, nullptr)) {
            ADD_FAILURE() << "error " << GetLastError();
            read = 0;
        }
        got.resize(read);
        return got;
    }
    // A pseudo-terminal has no modem lines: wine refuses EscapeCommFunction,
    // GetCommModemStatus and WaitCommEvent on it.
    bool needsModemStandIn() const override { return true; }
    // Wine lets CreateFileA open a COM port twice; Windows refuses the second open.
    bool opensExclusively() const override { return false; }

private:
    int port_;
    HANDLE far_;
};

} // namespace

std::unique_ptr<FarEnd> openFarEnd(std::string &why) {
    const char *pair = std::getenv("ZELQA_TEST_NULL_MODEM");
    int ourPort = 0, otherPort = 0;
    if (!pair || std::sscanf(pair, "%d %d", &ourPort, &otherPort) != 2) {
        why = "no null-modem pair: run under tests/devices/null-modem";
        return nullptr;
    }
    std::string path = "\\\\.\\COM" + std::to_string(otherPort);
    HANDLE h = CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (h == INVALID_HANDLE_VALUE) {
        why = "cannot open " + path;
        return nullptr;
    }
    COMMTIMEOUTS timeouts{};
    timeouts.ReadTotalTimeoutConstant = kPatienceMs;
    timeouts.WriteTotalTimeoutConstant = kPatienceMs;
    SetCommTimeouts(h, &timeouts);
    return std::make_unique<OtherPort>(ourPort, h);
}

} // namespace zq::test
