#pragma once

// Which file a path stands for at this moment: tells a file from another one put in its place.

#include "port/kernel.h"

#if !defined(_WIN32)
#include <sys/stat.h>
#endif

#include <cstdint>
#include <string>

namespace port
{

struct FileIdentity
{
    std::uint64_t volume = 0;
    std::uint64_t number = 0; ///< 0 stands for no file

    bool operator==(const FileIdentity&) const = default;
};

#if defined(_WIN32)

/// `path` is UTF-8. All 0 when there is no such file.
inline FileIdentity IdentifyFile(const std::string& path)
{
    const int length = MultiByteToWideChar(CP_UTF8, 0, path.c_str(), -1, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length > 0 ? length : 1), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, path.c_str(), -1, wide.data(), length);
    const HANDLE file =
        CreateFileW(wide.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
    {
        return {};
    }
    BY_HANDLE_FILE_INFORMATION information{};
    const BOOL known = GetFileInformationByHandle(file, &information);
    CloseHandle(file);
    if (known == 0)
    {
        return {};
    }
    return {information.dwVolumeSerialNumber,
            (static_cast<std::uint64_t>(information.nFileIndexHigh) << 32U) |
                information.nFileIndexLow};
}

#else

/// `path` is UTF-8. All 0 when there is no such file.
inline FileIdentity IdentifyFile(const std::string& path)
{
    struct stat information = {};
    if (stat(path.c_str(), &information) != 0)
    {
        return {};
    }
    return {static_cast<std::uint64_t>(information.st_dev),
            static_cast<std::uint64_t>(information.st_ino)};
}

#endif

} // namespace port
