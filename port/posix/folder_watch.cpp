#include "port/folder_watch.h"

#include "port/posix/native_text.h"
#include "port/posix/system_error.h"

#include <cstring>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace port
{

namespace
{

constexpr std::uint32_t kWholeFiles = IN_CLOSE_WRITE | IN_MOVED_TO;
constexpr std::uint32_t kFolderItself = IN_DELETE_SELF | IN_MOVE_SELF;
constexpr std::uint32_t kGone = kFolderItself | IN_IGNORED | IN_UNMOUNT;
constexpr std::size_t kBuffer = std::size_t{64} * 1024;

// What one event adds to what is told.
FolderWatch::Told Take(const inotify_event& event, const char* name,
                       std::vector<std::string>& names)
{
    if ((event.mask & IN_Q_OVERFLOW) != 0)
    {
        return FolderWatch::Told::Changes;
    }
    if ((event.mask & kGone) != 0)
    {
        return FolderWatch::Told::Gone;
    }
    if (event.len > 0 && (event.mask & IN_ISDIR) == 0)
    {
        names.emplace_back(name); // ends with NULs
        return FolderWatch::Told::Names;
    }
    return FolderWatch::Told::Nothing;
}

} // namespace

FolderWatch::~FolderWatch()
{
    Close();
}

bool FolderWatch::Open(const char* folder)
{
    Close();
    const std::string native = NativePath(folder);
    const int descriptor = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    if (descriptor < 0)
    {
        return FailWithErrno();
    }
    if (inotify_add_watch(descriptor, native.c_str(), kWholeFiles | kFolderItself | IN_ONLYDIR) < 0)
    {
        FailOnPath(native.c_str());
        close(descriptor);
        return false;
    }
    m_native = descriptor;
    return true;
}

FolderWatch::Told FolderWatch::WaitFor(std::chrono::milliseconds time,
                                       std::vector<std::string>& names)
{
    pollfd waited = {static_cast<int>(m_native), POLLIN, 0};
    if (poll(&waited, 1, static_cast<int>(time.count())) <= 0)
    {
        return Told::Nothing;
    }
    alignas(inotify_event) char buffer[kBuffer];
    const ssize_t size = read(static_cast<int>(m_native), buffer, sizeof buffer);
    // The values are ordered by weight: what asks for more hides what asks for less.
    Told told = Told::Nothing;
    for (ssize_t at = 0; at < size;)
    {
        inotify_event event;
        std::memcpy(&event, buffer + at, sizeof event);
        const Told one = Take(event, buffer + at + sizeof event, names);
        told = one > told ? one : told;
        at += static_cast<ssize_t>(sizeof event + event.len);
    }
    return told;
}

void FolderWatch::Close() noexcept
{
    if (m_native >= 0)
    {
        close(static_cast<int>(m_native));
        m_native = -1;
    }
}

} // namespace port
