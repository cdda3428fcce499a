// Test support: the far end of a real serial line, and a stand-in for modem lines.
//
// On Linux the line is a pseudo-terminal: OPENCOM reaches its slave through ZELQA_COM<n>
// and the test holds the master. Under wine, tests/devices/null-modem joins two COM ports
// through pseudo-terminals; OPENCOM opens one and the test holds the other.
#pragma once

#include "platform/serial.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace zq::test {

class FarEnd {
public:
    virtual ~FarEnd() = default;
    // The port number OPENCOM reaches this line by.
    virtual int port() const = 0;
    virtual void send(std::string_view bytes) = 0;
    // The next n bytes the line delivers; fewer only when none came for seconds.
    virtual std::string receive(size_t n) = 0;
    // True when the line has no modem lines the system can drive (wine over a
    // pseudo-terminal): the tests then stand in for them.
    virtual bool needsModemStandIn() const = 0;
    // False where a second open of an open line is not refused (wine: Windows refuses it).
    virtual bool opensExclusively() const = 0;
};

// A fresh far end, or null with the reason in `why` when this machine has none.
std::unique_ptr<FarEnd> openFarEnd(std::string &why);

// Stands in for the modem lines while it lives: DTR and RTS rise, the line is clear to
// send unless ctsOffPolls says how many status reads first see it off, and event waits
// report a received byte at once (Waits::Reported) or wait on the line (Waits::Real),
// until waitsBeforeFailure runs out and a wait reports the line failed.
class ModemStandIn {
public:
    enum class Waits { Reported, Real };
    explicit ModemStandIn(Waits waits);
    ~ModemStandIn();
    static inline int64_t ctsOffPolls = 0;         // status reads still to see CTS off; <0: for ever
    static inline int64_t statusReads = 0;         // status reads so far
    static inline int64_t waitsBeforeFailure = -1; // <0: the line never fails
    static inline int64_t reportedWaits = 0;
    static inline bool dtrRaised = false;
    static inline bool rtsRaised = false;
    static inline bool refuseRts = false;          // raising RTS fails

private:
    platform::ModemLineSwitch switch_{};
};

} // namespace zq::test
