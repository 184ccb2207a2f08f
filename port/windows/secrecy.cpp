#include "port/secrecy.h"

#include "port/kernel.h"
#include "port/windows/native_text.h"
#include "port/windows/security.h"

namespace port
{

void KeepMemoryPrivate() noexcept
{
    // Error reporting, which writes the dumps, leaves the process alone then.
    SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
}

FileRights RightsOf(const char* /*path*/)
{
    return {}; // access lists are inherited from the folder, where the administrator sets them
}

bool IsWritableFile(const char* path)
{
    const HANDLE opened = CreateFileW(NativePath(path).c_str(), FILE_WRITE_DATA,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
    {
        return false;
    }
    CloseHandle(opened);
    return true;
}

bool BelongsToOther(const char* path)
{
    return !IsOwnedByCurrentUser(NativePath(path).c_str()) && GetLastError() == ERROR_INVALID_OWNER;
}

bool IsLink(const char* path)
{
    const DWORD attributes = GetFileAttributesW(NativePath(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES &&
           (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

} // namespace port
