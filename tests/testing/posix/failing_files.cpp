// Stands before the system library's calls: the rooms reach the system through a shared library,
// which finds these first.

#include "tests/testing/failing_files.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using testing_support::FileCall;
using testing_support::FilePlan;

struct Fault
{
    std::string folder;
    FilePlan plan;
    std::uint64_t counted = 0;
    bool used = false;
    FileCall hit = FileCall::Count;
    std::string hitPath;
};

bool g_armed = false;
Fault g_fault;
std::array<std::atomic<bool>, 4096> g_watched; // by descriptor

template <typename Function>
Function* Next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool IsWatched(const char* path)
{
    return g_armed && path != nullptr && std::string(path).rfind(g_fault.folder, 0) == 0;
}

bool IsWatched(int descriptor)
{
    return g_armed && descriptor >= 0 && static_cast<std::size_t>(descriptor) < g_watched.size() &&
           g_watched[static_cast<std::size_t>(descriptor)];
}

void Watch(int descriptor, bool watched)
{
    if (descriptor >= 0 && static_cast<std::size_t>(descriptor) < g_watched.size())
    {
        g_watched[static_cast<std::size_t>(descriptor)] = watched;
    }
}

/// Whether the call is to fail.
bool MustFail(FileCall call, const char* path)
{
    const FilePlan& plan = g_fault.plan;
    if ((plan.calls & Bit(call)) == 0)
    {
        return false;
    }
    const std::uint64_t number = ++g_fault.counted;
    const bool fails =
        plan.failing != 0 && (number == plan.failing || (plan.fromThenOn && number > plan.failing));
    if (fails && !g_fault.used)
    {
        g_fault.used = true;
        g_fault.hit = call;
        g_fault.hitPath = path;
    }
    return fails;
}

template <typename Forward>
int PassPath(FileCall call, const char* path, const Forward& forward)
{
    if (IsWatched(path) && MustFail(call, path))
    {
        errno = g_fault.plan.error;
        return -1;
    }
    return forward();
}

template <typename Forward>
int PassDescriptor(FileCall call, int descriptor, const Forward& forward)
{
    if (IsWatched(descriptor) && MustFail(call, ""))
    {
        errno = g_fault.plan.error;
        return -1;
    }
    return forward();
}

/// A transfer that fails, or comes to half of what was asked for.
template <typename Forward>
ssize_t PassTransfer(FileCall call, int descriptor, std::size_t size, const Forward& forward)
{
    if (!IsWatched(descriptor) || !MustFail(call, ""))
    {
        return forward(size);
    }
    if (g_fault.plan.error == 0)
    {
        return forward(std::max<std::size_t>(size / 2, std::min<std::size_t>(size, 1)));
    }
    errno = g_fault.plan.error;
    return -1;
}

} // namespace

namespace testing_support
{

FileFault::FileFault(const std::string& folder, const FilePlan& plan)
{
    g_fault = Fault{folder, plan, 0, false, FileCall::Count, {}};
    g_armed = true;
}

FileFault::~FileFault()
{
    g_armed = false;
}

std::uint64_t FileFault::Counted() const noexcept
{
    return g_fault.counted;
}

bool FileFault::WasUsed() const noexcept
{
    return g_fault.used;
}

FileCall FileFault::Hit() const noexcept
{
    return g_fault.hit;
}

const std::string& FileFault::HitPath() const noexcept
{
    return g_fault.hitPath;
}

} // namespace testing_support

extern "C"
{

    int open(const char* path, int flags, ...)
    {
        mode_t mode = 0;
        if ((flags & (O_CREAT | O_TMPFILE)) != 0)
        {
            std::va_list more;
            va_start(more, flags);
            mode = va_arg(more, mode_t);
            va_end(more);
        }
        static auto* const next = Next<int(const char*, int, ...)>("open");
        const int descriptor =
            PassPath(FileCall::Open, path, [&] { return next(path, flags, mode); });
        Watch(descriptor, IsWatched(path));
        return descriptor;
    }

    int close(int descriptor)
    {
        static auto* const next = Next<int(int)>("close");
        Watch(descriptor, false);
        return next(descriptor);
    }

    ssize_t read(int descriptor, void* buffer, size_t size)
    {
        static auto* const next = Next<ssize_t(int, void*, size_t)>("read");
        return PassTransfer(FileCall::Read, descriptor, size,
                            [&](std::size_t count) { return next(descriptor, buffer, count); });
    }

    ssize_t write(int descriptor, const void* bytes, size_t size)
    {
        static auto* const next = Next<ssize_t(int, const void*, size_t)>("write");
        return PassTransfer(FileCall::Write, descriptor, size,
                            [&](std::size_t count) { return next(descriptor, bytes, count); });
    }

    int fsync(int descriptor)
    {
        static auto* const next = Next<int(int)>("fsync");
        return PassDescriptor(FileCall::Flush, descriptor, [&] { return next(descriptor); });
    }

    int ftruncate(int descriptor, off_t size) noexcept
    {
        static auto* const next = Next<int(int, off_t)>("ftruncate");
        return PassDescriptor(FileCall::Truncate, descriptor,
                              [&] { return next(descriptor, size); });
    }

    int flock(int descriptor, int operation) noexcept
    {
        static auto* const next = Next<int(int, int)>("flock");
        return PassDescriptor(FileCall::Lock, descriptor,
                              [&] { return next(descriptor, operation); });
    }

    int rename(const char* from, const char* to) noexcept
    {
        static auto* const next = Next<int(const char*, const char*)>("rename");
        return PassPath(FileCall::Rename, from, [&] { return next(from, to); });
    }

    int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                  unsigned int flags) noexcept
    {
        static auto* const next =
            Next<int(int, const char*, int, const char*, unsigned int)>("renameat2");
        return PassPath(FileCall::Rename, from,
                        [&] { return next(fromFolder, from, toFolder, to, flags); });
    }

    int link(const char* from, const char* to) noexcept
    {
        static auto* const next = Next<int(const char*, const char*)>("link");
        return PassPath(FileCall::Rename, from, [&] { return next(from, to); });
    }

    int unlink(const char* path) noexcept
    {
        static auto* const next = Next<int(const char*)>("unlink");
        return PassPath(FileCall::Delete, path, [&] { return next(path); });
    }

    int mkdir(const char* path, mode_t mode) noexcept
    {
        static auto* const next = Next<int(const char*, mode_t)>("mkdir");
        return PassPath(FileCall::MakeFolder, path, [&] { return next(path, mode); });
    }

} // extern "C"
