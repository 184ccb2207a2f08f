#include "port/file_writer.h"

#include "port/kernel.h"
#include "port/windows/native_text.h"

namespace port
{

Writer WriterOf(const char* path)
{
    // Who does not share writing is refused while somebody writes.
    const HANDLE file =
        CreateFileW(NativePath(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
    {
        return GetLastError() == ERROR_SHARING_VIOLATION ? Writer::Some : Writer::Unknown;
    }
    CloseHandle(file);
    return Writer::None;
}

} // namespace port
