#include "port/file_identity.h"

#include "port/kernel.h"
#include "port/windows/native_text.h"

#include <cstdint>
#include <memory>

namespace port
{

namespace
{

struct HandleCloser
{
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};

using OwnedHandle = std::unique_ptr<void, HandleCloser>;

/// A file or folder, to look at only; null when there is none.
OwnedHandle OpenToLook(const std::string& path)
{
    const HANDLE file = CreateFileW(NativeFromUtf8(path).c_str(), FILE_READ_ATTRIBUTES,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    return OwnedHandle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

FileIdentity IdentityOf(const OwnedHandle& file)
{
    BY_HANDLE_FILE_INFORMATION information{};
    if (file == nullptr || GetFileInformationByHandle(file.get(), &information) == 0)
    {
        return {};
    }
    return {information.dwVolumeSerialNumber,
            (static_cast<std::uint64_t>(information.nFileIndexHigh) << 32U) |
                information.nFileIndexLow};
}

} // namespace

FileIdentity IdentifyFile(const std::string& path)
{
    return IdentityOf(OpenToLook(path));
}

std::string StampOf(const std::string& path)
{
    const OwnedHandle file = OpenToLook(path);
    FILE_BASIC_INFO times{};
    if (file == nullptr ||
        GetFileInformationByHandleEx(file.get(), FileBasicInfo, &times, sizeof times) == 0)
    {
        return {};
    }
    return std::to_string(IdentityOf(file).number) + "/" +
           std::to_string(times.ChangeTime.QuadPart);
}

std::string RealPath(const std::string& path)
{
    const OwnedHandle file = OpenToLook(path);
    if (file == nullptr)
    {
        return {};
    }
    std::wstring real(MAX_PATH, L'\0');
    DWORD length = GetFinalPathNameByHandleW(file.get(), real.data(),
                                             static_cast<DWORD>(real.size()), FILE_NAME_NORMALIZED);
    if (length > real.size())
    {
        real.resize(length);
        length = GetFinalPathNameByHandleW(file.get(), real.data(), length, FILE_NAME_NORMALIZED);
    }
    real.resize(length < real.size() ? length : 0);
    return Utf8FromNative(real);
}

} // namespace port
