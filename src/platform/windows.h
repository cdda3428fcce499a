// Top-level windows as far as the runtime and the installer need them: make one of a class,
// remove it, ask whether any process of this user holds one of a class, and claim to be
// the one running program of a class.
//
// On Windows these are real, hidden windows. On POSIX a window class is a lock file
// "<class>.class" (class lowered, bytes outside [a-z0-9._-] as %XX) in a per-user
// directory: ZELQA_WINDOW_DIR when set, else $XDG_RUNTIME_DIR/zelqa-windows, else
// /tmp/zelqa-windows-<uid>. Each window holds a shared flock on its class file; a class
// exists while some process holds such a lock, and the kernel drops the lock when the
// process ends, however it ends.
#pragma once

#include <cstdint>
#include <utility>

namespace zq::platform {

// The native window behind an owner: an HWND on Windows, a lock holder on POSIX.
void *createNativeWindow(const char *className, const char *title);
void destroyNativeWindow(void *window) noexcept;

// The native claim behind an InstanceClaim: a named mutex on Windows, "<class>.instance"
// in the window directory opened exclusively (openExclusive) on POSIX.
void releaseNativeClaim(void *claim) noexcept;

// A move-only owner of one native object, released by Release.
template <void (*Release)(void *) noexcept>
class NativeOwner {
public:
    NativeOwner() noexcept = default;
    explicit NativeOwner(void *native) noexcept : native_(native) {}
    NativeOwner(NativeOwner &&other) noexcept : native_(std::exchange(other.native_, nullptr)) {}
    NativeOwner &operator=(NativeOwner &&other) noexcept {
        if (this != &other) {
            Release(native_);
            native_ = std::exchange(other.native_, nullptr);
        }
        return *this;
    }
    NativeOwner(const NativeOwner &) = delete;
    NativeOwner &operator=(const NativeOwner &) = delete;
    ~NativeOwner() { Release(native_); }

    void *native() const noexcept { return native_; }
    void *release() noexcept { return std::exchange(native_, nullptr); }
    explicit operator bool() const noexcept { return native_ != nullptr; }

private:
    void *native_ = nullptr;
};

using Window = NativeOwner<destroyNativeWindow>;
using InstanceClaim = NativeOwner<releaseNativeClaim>;

// A window of className that is not shown; empty when it cannot be made.
inline Window createWindow(const char *className, const char *title) {
    return Window(createNativeWindow(className, title));
}

// True while a window of className exists in any process of this user. Class names
// compare without regard to case, as on Windows.
bool windowExists(const char *className);

// Brings the first window of className to the front (on Windows: SetForegroundWindow with
// the window handle's lowest bit set). False when there is none.
bool bringWindowForward(const char *className);

// Claims, in one atomic step, the place of the one running program of className: of
// processes claiming at the same time exactly one gets it, and it is free again when its
// holder's claim is released or its process ends, however it ends. False when another
// process holds it. When the system cannot make the claim at all (no place to keep it),
// the answer is true with an empty claim: the caller runs as it would without one.
bool claimInstance(const char *className, InstanceClaim &claim);

// Waits ms milliseconds while answering the messages of the calling thread's windows.
void serveWindows(uint32_t ms);

} // namespace zq::platform
