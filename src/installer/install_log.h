// The installer's log "inst.txt" beside the program: appended to by every run, never cut.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace zq::installer {

inline constexpr char kLogName[] = "inst.txt";

class InstallLog {
public:
    // Opens "inst.txt" in `directory` (which ends with its separator) for appending in
    // text mode; an unopened log writes nothing.
    static InstallLog openIn(const std::string &directory) { return open(directory, "a+"); }
    // Opens "inst.txt" in `directory` afresh ("w+"): the application's hand-off starts a
    // new log, which the installer then extends.
    static InstallLog startFreshIn(const std::string &directory) { return open(directory, "w+"); }

    bool isOpen() const { return stream_ != nullptr; }
    // Writes formatted text as it is, Latin-1 bytes and all; flushed at once, so the log
    // tells how far a run got even if it is killed.
    void write(const char *format, ...) __attribute__((format(printf, 2, 3)));
    void close() { stream_.reset(); }

private:
    static InstallLog open(const std::string &directory, const char *mode);

    struct Closer {
        void operator()(std::FILE *f) const { std::fclose(f); }
    };
    std::unique_ptr<std::FILE, Closer> stream_;
};

} // namespace zq::installer
