#include "port/lock_file.h"

#include "port/kernel.h"
#include "port/windows/native_text.h"
#include "port/windows/path_error.h"
#include "port/windows/security.h"

namespace port
{

namespace
{

constexpr DWORD kLongestNote = 256;

HANDLE HandleOf(std::intptr_t native)
{
    // Headers of every platform hold it as a number. NOLINTNEXTLINE(performance-no-int-to-ptr)
    return reinterpret_cast<HANDLE>(native);
}

} // namespace

LockFile::~LockFile()
{
    GiveBack();
}

LockFile::Attempt LockFile::TryTake(const char* path, std::string_view note)
{
    GiveBack();
    SECURITY_ATTRIBUTES* const security = OwnerOnly();
    if (security == nullptr)
    {
        return Attempt::Failed;
    }
    // Who shares no right to write is alone with it, and the system removes the file with the last
    // handle, however its process ends.
    const HANDLE file = CreateFileW(
        NativePath(path).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, FILE_SHARE_READ, security,
        OPEN_ALWAYS,
        FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE)
    {
        if (GetLastError() == ERROR_SHARING_VIOLATION)
        {
            return Attempt::Held;
        }
        FailOnPath();
        return Attempt::Failed;
    }
    DWORD written = 0;
    // For people only: a lock holds without it, too.
    static_cast<void>(
        WriteFile(file, note.data(), static_cast<DWORD>(note.size()), &written, nullptr));
    m_native = reinterpret_cast<std::intptr_t>(file);
    return Attempt::Taken;
}

bool LockFile::IsTaken() const noexcept
{
    return m_native != -1;
}

void LockFile::GiveBack() noexcept
{
    if (IsTaken())
    {
        CloseHandle(HandleOf(m_native));
        m_native = -1;
    }
}

std::string NoteOfLock(const char* path)
{
    const HANDLE file = CreateFileW(NativePath(path).c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
    {
        return {};
    }
    char text[kLongestNote] = {};
    DWORD size = 0;
    const BOOL isRead = ReadFile(file, text, kLongestNote, &size, nullptr);
    CloseHandle(file);
    return isRead != 0 ? std::string(text, size) : std::string();
}

} // namespace port
