#include "port/files.h"

#include "port/windows/native_text.h"
#include "port/windows/path_error.h"

namespace port
{

namespace
{

bool Move(const char* from, const char* to, DWORD flags)
{
    // The flag makes the call return when the move is on the disk.
    return MoveFileExW(NativePath(from).c_str(), NativePath(to).c_str(),
                       flags | MOVEFILE_WRITE_THROUGH) != 0 ||
           FailOnPath();
}

} // namespace

char PathSeparator()
{
    return '\\';
}

bool IsPathSeparator(char character)
{
    return character == '\\' || character == '/';
}

bool FileExists(const char* path)
{
    const DWORD attributes = GetFileAttributesW(NativePath(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES &&
           (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) == 0;
}

std::int64_t FileSize(const char* path)
{
    WIN32_FILE_ATTRIBUTE_DATA information;
    if (GetFileAttributesExW(NativePath(path).c_str(), GetFileExInfoStandard, &information) == 0 ||
        (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
    {
        return 0;
    }
    return (static_cast<std::int64_t>(information.nFileSizeHigh) << 32U) | information.nFileSizeLow;
}

bool MoveFileReplacing(const char* from, const char* to)
{
    return Move(from, to, MOVEFILE_REPLACE_EXISTING);
}

bool MoveFileNoReplace(const char* from, const char* to)
{
    return Move(from, to, 0);
}

} // namespace port
