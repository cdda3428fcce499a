// The serial port without a line: argument errors, ports that do not open, stray handles.
#include "support/fresh_runtime.h"
#include "support/refused_call.h"
#include "zelqa.h"

#include <gtest/gtest.h>

namespace zq::test {
namespace {

pObj number(double x) { return __INIT_DOUBLE(x); }
pObj handle(intptr_t h) { return __INIT_HANDLE(reinterpret_cast<void *>(h)); }

const RefusedCall refused[] = {
    {"OpenWithTextPort", [] { OPENCOM(__INIT_CHARPTR("1"), number(9600), number(0), number(0), number(0)); },
     "ARGUMENT ERROR!"},
    {"OpenWithoutItsLastNumber", [] { OPENCOM(number(1), number(9600), number(0), number(0), nullptr); },
     "ARGUMENT ERROR!"},
    {"ReadFromANumber", [] { READCOM(number(3), __INIT_CHARPTR("     "), number(2)); }, "ARGUMENT ERROR!"},
    {"WriteANumber", [] { WRITECOM(handle(3), number(5), number(1)); }, "ARGUMENT ERROR!"},
    {"CloseText", [] { CLOSECOM(__INIT_CHARPTR("COM1:")); }, "ARGUMENT ERROR!"},
};

class SerialPortRefuses : public ::testing::TestWithParam<RefusedCall> {};
TEST_P(SerialPortRefuses, WithArgumentError) { expectRuntimeError(GetParam()); }
INSTANTIATE_TEST_SUITE_P(Devices, SerialPortRefuses, ::testing::ValuesIn(refused), refusedCallName);

using SerialPort = FreshRuntime;

TEST_F(SerialPort, PortsWithoutADeviceGiveTheZeroHandle) {
    platform::setEnvironment("ZELQA_COM200", "/nonexistent/zelqa-serial");
    for (double port : {0.0, -1.0, 200.0, 256.0, 1e12}) {
        pObj h = OPENCOM(number(port), number(9600), number(0), number(0), number(0));
        EXPECT_EQ(h->type, static_cast<uint32_t>(TYPE_HANDLE)) << port;
        EXPECT_EQ(h->payload.p, nullptr) << port;
    }
    platform::setEnvironment("ZELQA_COM200", nullptr);
}

TEST_F(SerialPort, HandlesNotOpenedHereAreNeverUsed) {
    for (intptr_t h : {intptr_t{0}, intptr_t{-1}, intptr_t{1}, intptr_t{12345}}) {
        EXPECT_EQ(CLOSECOM(handle(h)), __INIT_BOOL(0)) << h;
        EXPECT_EQ(WRITECOM(handle(h), __INIT_CHARPTR("ABC"), number(3))->payload.d, 0.0) << h;
        EXPECT_EQ(READCOM(handle(h), __INIT_CHARPTR("      "), number(3))->payload.d, 0.0) << h;
    }
}

} // namespace
} // namespace zq::test
