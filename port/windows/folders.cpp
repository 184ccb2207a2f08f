#include "port/files.h"

#include "port/windows/native_text.h"
#include "port/windows/path_error.h"
#include "port/windows/security.h"

#include <algorithm>
#include <memory>

namespace port
{

namespace
{

struct SearchCloser
{
    void operator()(HANDLE search) const noexcept { FindClose(search); }
};

bool IsFolderNative(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsSeparator(wchar_t unit)
{
    return unit == L'\\' || unit == L'/';
}

/// Without separators at the end, save the one of a drive's root.
std::wstring WithoutFinalSeparators(std::wstring path)
{
    while (path.size() > 1 && IsSeparator(path.back()) && path[path.size() - 2] != L':')
    {
        path.pop_back();
    }
    return path;
}

/// Creates the folder and those above it; another process may create them at the same time.
bool MakeFolders(const std::wstring& path, SECURITY_ATTRIBUTES* security)
{
    if (IsFolderNative(path) || CreateDirectoryW(path.c_str(), security) != 0)
    {
        return true;
    }
    const DWORD reason = GetLastError();
    const std::size_t end = path.find_last_of(L"\\/");
    if (reason != ERROR_PATH_NOT_FOUND || end == std::wstring::npos || end == 0)
    {
        return reason == ERROR_ALREADY_EXISTS;
    }
    const std::wstring above = WithoutFinalSeparators(path.substr(0, end));
    return above.size() < path.size() && MakeFolders(above, security) &&
           (CreateDirectoryW(path.c_str(), security) != 0 ||
            GetLastError() == ERROR_ALREADY_EXISTS);
}

/// Accepts what is there when it is a folder of the current user.
bool AcceptFolder(const std::wstring& path)
{
    if (!IsFolderNative(path))
    {
        SetLastError(ERROR_FILE_EXISTS);
        return false;
    }
    return IsOwnedByCurrentUser(path.c_str());
}

} // namespace

bool FolderExists(const char* path)
{
    return IsFolderNative(NativePath(path));
}

bool FlushFolder(const char* folder)
{
    // Moves are written through and the file system's journal keeps the rest in order.
    if (IsFolderNative(NativePath(folder)))
    {
        return true;
    }
    SetLastError(ERROR_PATH_NOT_FOUND);
    return false;
}

bool CreatePrivateFolder(const char* folder)
{
    const std::wstring native = WithoutFinalSeparators(NativePath(folder));
    SECURITY_ATTRIBUTES* const security = OwnerOnly();
    return security != nullptr && (MakeFolders(native, security) || FailOnPath()) &&
           AcceptFolder(native);
}

bool RemoveEmptyFolder(const char* folder)
{
    return RemoveDirectoryW(NativePath(folder).c_str()) != 0 || FailOnPath();
}

bool IsWritableFolder(const char* folder)
{
    const std::wstring native = NativePath(folder);
    if (!IsFolderNative(native))
    {
        return false;
    }
    const HANDLE opened = CreateFileW(native.c_str(), FILE_ADD_FILE | FILE_ADD_SUBDIRECTORY,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
    {
        return false;
    }
    CloseHandle(opened);
    return true;
}

bool ListFolder(const char* folder, std::vector<std::string>& names)
{
    names.clear();
    const std::wstring native = NativePath(folder);
    if (!IsFolderNative(native))
    {
        SetLastError(ERROR_PATH_NOT_FOUND);
        return false;
    }
    WIN32_FIND_DATAW entry;
    const HANDLE first = FindFirstFileW((native + L"\\*").c_str(), &entry);
    if (first == INVALID_HANDLE_VALUE)
    {
        return FailOnPath();
    }
    const std::unique_ptr<void, SearchCloser> search(first);
    do
    {
        const std::wstring_view name = entry.cFileName;
        std::string text;
        if (name != L"." && name != L".." && TryFromNative(name, text))
        {
            names.push_back(std::move(text));
        }
    } while (FindNextFileW(search.get(), &entry) != 0);
    std::sort(names.begin(), names.end());
    return GetLastError() == ERROR_NO_MORE_FILES;
}

std::string TemporaryFolder()
{
    std::wstring folder(MAX_PATH + 1, L'\0');
    folder.resize(GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()));
    return FromNative(WithoutFinalSeparators(folder));
}

std::string ModuleFolder()
{
    HMODULE module = nullptr;
    if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                               GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           reinterpret_cast<LPCWSTR>(&ModuleFolder), &module) == 0)
    {
        return std::string();
    }
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    while (length == path.size())
    {
        path.resize(path.size() * 2);
        length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    }
    path.resize(length);
    const std::size_t end = path.find_last_of(L"\\/");
    return end == std::wstring::npos ? "."
                                     : FromNative(WithoutFinalSeparators(path.substr(0, end + 1)));
}

} // namespace port
