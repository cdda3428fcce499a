// Starting programs, waiting for them, pausing, and this process's own facts.
//
// A started program is held through move-only owners of its process and main-thread
// handles. On Windows these are the handles CreateProcessA returns; POSIX has no such
// handles, so there both owners hold the process id (on Linux the main thread's id equals
// the process id) and releasing them does nothing.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace zq::platform {

enum class HandleKind { Process, Thread };

// Releases one handle of the given kind (CloseHandle on Windows, nothing on POSIX).
void closeHandle(HandleKind kind, std::intptr_t handle) noexcept;

// A move-only owner of one process or thread handle and the id that goes with it.
template <HandleKind K>
class OwnedHandle {
public:
    OwnedHandle() noexcept = default;
    OwnedHandle(std::intptr_t handle, uint32_t id) noexcept : handle_(handle), id_(id) {}
    OwnedHandle(OwnedHandle &&other) noexcept
        : handle_(std::exchange(other.handle_, 0)), id_(std::exchange(other.id_, 0)) {}
    OwnedHandle &operator=(OwnedHandle &&other) noexcept {
        if (this != &other) {
            reset();
            handle_ = std::exchange(other.handle_, 0);
            id_ = std::exchange(other.id_, 0);
        }
        return *this;
    }
    OwnedHandle(const OwnedHandle &) = delete;
    OwnedHandle &operator=(const OwnedHandle &) = delete;
    ~OwnedHandle() { reset(); }

    void reset() noexcept {
        if (handle_)
            closeHandle(K, handle_);
        handle_ = 0;
        id_ = 0;
    }
    std::intptr_t handle() const noexcept { return handle_; } // the value a log prints
    uint32_t id() const noexcept { return id_; }              // process or thread id
    explicit operator bool() const noexcept { return handle_ != 0; }

private:
    std::intptr_t handle_ = 0;
    uint32_t id_ = 0;
};

using ProcessHandle = OwnedHandle<HandleKind::Process>;
using ThreadHandle = OwnedHandle<HandleKind::Thread>;

// A program started by startProgram.
struct StartedProcess {
    ProcessHandle process;
    ThreadHandle thread; // its main thread
};

// Starts the program file `application` in this process's environment and current
// directory, inheriting no handles. `commandLine` (null: none) is the whole command line,
// program name first; on POSIX the program name ends as on Windows (a name starting with
// a double quote runs to the closing one, which is dropped; else it ends at the first
// blank) and the rest is cut at every blank into the arguments, so joining them with
// single blanks gives the rest back. The new program's start-up record asks for its
// first window to be hidden, placed and sized at 0. False when the program cannot start.
bool startProgram(const char *application, const char *commandLine, StartedProcess &out);

// A program name as the first word of a command line: in double quotes when it holds a
// blank or a tab, the usual convention of Windows programs; else as it is.
std::string commandLineName(const std::string &name);

// Starts `application` as startProgram does, giving it `arguments`, the first being its
// program name. On Windows the command line is commandLineName(first) followed by each
// further argument after one blank, as it is (the programs of this system read the text
// after their name as it is); on POSIX the arguments are the program's argv, unchanged.
bool startProgramWithArguments(const char *application, const std::vector<std::string> &arguments,
                               StartedProcess &out);

// Waits until the process ends and returns its exit code (128 + signal on POSIX when a
// signal ended it), or -1 when it cannot be waited for.
int waitForExit(const ProcessHandle &process);

// Ends the process at once (SIGKILL on POSIX).
void terminateProcess(const ProcessHandle &process);

// Suspends the calling thread for ms milliseconds.
void sleepMilliseconds(uint32_t ms);

uint32_t currentProcessId();

// The whole command line this program was given, program name first: on Windows the raw
// text; on POSIX commandLineName(argv[0]) and then the arguments after it, each after one
// blank.
std::string wholeCommandLine(int argc, char **argv);

// fopen that keeps the stream from being inherited by programs started later.
std::FILE *openPrivateStream(const char *path, const char *mode);

// Waits until no other process holds the stream's file, then holds it until the stream is
// closed (an advisory lock on POSIX, a whole-file lock on Windows). Programs that hand a
// log to one another take it, so their lines never overwrite each other.
void holdStreamExclusively(std::FILE *stream);

} // namespace zq::platform
