#include "port/secrecy.h"

#include "port/kernel.h"
#include "port/windows/native_text.h"

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

bool IsLink(const char* path)
{
    const DWORD attributes = GetFileAttributesW(NativePath(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES &&
           (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

} // namespace port
