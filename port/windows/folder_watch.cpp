#include "port/folder_watch.h"

#include "port/kernel.h"
#include "port/windows/native_text.h"
#include "port/windows/path_error.h"

namespace port
{

namespace
{

constexpr DWORD kChanges =
    FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_SIZE | FILE_NOTIFY_CHANGE_LAST_WRITE;

HANDLE HandleOf(std::intptr_t native)
{
    // Headers of every platform hold it as a number. NOLINTNEXTLINE(performance-no-int-to-ptr)
    return reinterpret_cast<HANDLE>(native);
}

} // namespace

FolderWatch::~FolderWatch()
{
    Close();
}

bool FolderWatch::Open(const char* folder)
{
    Close();
    const HANDLE changes =
        FindFirstChangeNotificationW(NativePath(folder).c_str(), FALSE, kChanges);
    if (changes == INVALID_HANDLE_VALUE)
    {
        return FailOnPath();
    }
    m_native = reinterpret_cast<std::intptr_t>(changes);
    return true;
}

FolderWatch::Told FolderWatch::WaitFor(std::chrono::milliseconds time,
                                       std::vector<std::string>& /*names*/)
{
    // A folder that is watched cannot be removed, but what holds it may be taken away.
    const DWORD waited = WaitForSingleObject(HandleOf(m_native), static_cast<DWORD>(time.count()));
    if (waited == WAIT_TIMEOUT)
    {
        return Told::Nothing;
    }
    return waited == WAIT_OBJECT_0 && FindNextChangeNotification(HandleOf(m_native)) != 0
               ? Told::Changes
               : Told::Gone;
}

void FolderWatch::Close() noexcept
{
    if (m_native != -1)
    {
        FindCloseChangeNotification(HandleOf(m_native));
        m_native = -1;
    }
}

} // namespace port
