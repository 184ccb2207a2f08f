#include "port/file_identity.h"

#include "port/kernel.h"
#include "port/windows/native_text.h"

namespace port
{

FileIdentity IdentifyFile(const std::string& path)
{
    const HANDLE file = CreateFileW(NativeFromUtf8(path).c_str(), 0,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
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

} // namespace port
