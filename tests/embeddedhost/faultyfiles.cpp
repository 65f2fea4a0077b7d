#include "faultyfiles.h"

#include <cerrno>
#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/types.h>
#include <utility>

namespace {

struct Plan
{
    /// 0 when nothing is planned.
    int call = 0;
    int error = 0;
    bool forGood = false;
    bool isHalf = false;
    std::function<void()> action;
    int calls = 0;
};

thread_local Plan gPlan;
/// Destructors of the thread may still write.
thread_local bool gIsArmed = false;
thread_local bool gKnowsRenameFlags = true;

/// Counts a call. Whether it has to fail, with errno.
bool Fails()
{
    if (!gIsArmed)
        return false;
    ++gPlan.calls;
    if (gPlan.action && gPlan.calls == gPlan.call) {
        gIsArmed = false;
        gPlan.action();
        gIsArmed = true;
    }
    bool const isTurn = gPlan.calls == gPlan.call || (gPlan.forGood && gPlan.calls > gPlan.call);
    if (gPlan.error == 0 || !isTurn)
        return false;
    errno = gPlan.error;
    return true;
}

template <typename Function>
Function* FindReal(char const* name, Function*)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

#define REAL(name) FindReal(#name, &name)

// The test program's definitions are found before the system's.
extern "C" {

ssize_t write(int file, void const* bytes, size_t size)
{
    static auto const real = REAL(write);
    if (!Fails())
        return real(file, bytes, size);
    bool const isHalf = gPlan.isHalf && size > 1 && gPlan.calls == gPlan.call;
    return isHalf ? real(file, bytes, size / 2) : -1;
}

// The descriptor is closed in any case.
int close(int file)
{
    static auto const real = REAL(close);
    bool const fails = Fails();
    int const result = real(file);
    if (fails)
        errno = gPlan.error;
    return fails ? -1 : result;
}

#define OPEN(name, parameters, arguments)                                                          \
    int name parameters                                                                            \
    {                                                                                              \
        static auto const real = REAL(name);                                                       \
        va_list more;                                                                              \
        va_start(more, flags);                                                                     \
        mode_t const mode = flags & O_CREAT ? va_arg(more, mode_t) : 0;                            \
        va_end(more);                                                                              \
        return Fails() ? -1 : real arguments;                                                      \
    }
#define CALL(type, name, parameters, arguments)                                                    \
    type name parameters                                                                           \
    {                                                                                              \
        static auto const real = REAL(name);                                                       \
        return Fails() ? -1 : real arguments;                                                      \
    }
// No power is lost in a test, and the disk takes its time.
#define SYNC(name)                                                                                 \
    int name(int)                                                                                  \
    {                                                                                              \
        return Fails() ? -1 : 0;                                                                   \
    }

OPEN(open, (char const* path, int flags, ...), (path, flags, mode))
OPEN(open64, (char const* path, int flags, ...), (path, flags, mode))
OPEN(openat, (int folder, char const* path, int flags, ...), (folder, path, flags, mode))
OPEN(openat64, (int folder, char const* path, int flags, ...), (folder, path, flags, mode))
SYNC(fsync)
SYNC(fdatasync)
CALL(ssize_t, read, (int file, void* bytes, size_t size), (file, bytes, size))
CALL(int, fchmod, (int file, mode_t mode), (file, mode))
CALL(int, mkdir, (char const* path, mode_t mode) noexcept, (path, mode))
CALL(int, mkdirat, (int folder, char const* path, mode_t mode) noexcept, (folder, path, mode))
CALL(int, unlink, (char const* path) noexcept, (path))
CALL(int, unlinkat, (int folder, char const* path, int flags) noexcept, (folder, path, flags))
CALL(int, rmdir, (char const* path) noexcept, (path))
CALL(int, rename, (char const* from, char const* to) noexcept, (from, to))
int renameat2(int folder, char const* from, int toFolder, char const* to, unsigned flags) noexcept
{
    static auto const real = REAL(renameat2);
    bool const isUnknown = flags != 0 && !gKnowsRenameFlags;
    bool const fails = Fails();
    if (isUnknown)
        errno = EINVAL;
    return fails || isUnknown ? -1 : real(folder, from, toFolder, to, flags);
}
CALL(int, linkat, (int folder, char const* from, int toFolder, char const* to, int flags) noexcept,
     (folder, from, toFolder, to, flags))

} // extern "C"

namespace faultyfiles {

void FailAt(int call, int error, bool forGood, bool isHalf)
{
    gPlan = {call, error, forGood, isHalf, nullptr, 0};
    gIsArmed = true;
}

void RunAt(int call, std::function<void()> action)
{
    gPlan = {call, 0, false, false, std::move(action), 0};
    gIsArmed = true;
}

void SetRenamesWithFlags(bool areKnown)
{
    gKnowsRenameFlags = areKnown;
}

bool Stop()
{
    gIsArmed = false;
    return gPlan.calls >= gPlan.call;
}

} // namespace faultyfiles
