#include "port/plain_file.h"

#include "port/kernel.h"
#include "port/windows/native_text.h"
#include "port/windows/path_error.h"

#include <algorithm>

namespace port
{

namespace
{

constexpr std::size_t kBlock = 65536;
constexpr DWORD kNotPlain = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;

PlainFile ReadFrom(HANDLE file, std::size_t most, std::string& bytes)
{
    BY_HANDLE_FILE_INFORMATION information{};
    if (GetFileType(file) != FILE_TYPE_DISK ||
        GetFileInformationByHandle(file, &information) == 0 ||
        (information.dwFileAttributes & kNotPlain) != 0)
    {
        return PlainFile::Other;
    }
    DWORD got = 1;
    while (got > 0 && bytes.size() < most)
    {
        const std::size_t before = bytes.size();
        bytes.resize(before + std::min(kBlock, most - before));
        const bool isRead = ReadFile(file, bytes.data() + before,
                                     static_cast<DWORD>(bytes.size() - before), &got, nullptr) != 0;
        bytes.resize(before + (isRead ? got : 0));
        if (!isRead)
        {
            return PlainFile::Failed;
        }
    }
    return PlainFile::Read;
}

// A folder is not opened as a file is.
PlainFile WhyNotOpened(const wchar_t* path)
{
    const DWORD reason = GetLastError();
    const DWORD attributes = GetFileAttributesW(path);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
    {
        return PlainFile::Other;
    }
    SetLastError(reason);
    FailOnPath();
    const DWORD told = GetLastError();
    return told == ERROR_FILE_NOT_FOUND || told == ERROR_PATH_NOT_FOUND ? PlainFile::Missing
                                                                        : PlainFile::Failed;
}

} // namespace

PlainFile ReadPlainFile(const char* path, std::size_t most, std::string& bytes)
{
    bytes.clear();
    const std::wstring native = NativePath(path);
    const HANDLE file = CreateFileW(
        native.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE)
    {
        return WhyNotOpened(native.c_str());
    }
    const PlainFile result = ReadFrom(file, most, bytes);
    CloseHandle(file);
    return result;
}

} // namespace port
