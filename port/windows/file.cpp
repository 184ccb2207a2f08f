#include "port/files.h"

#include "port/windows/native_text.h"
#include "port/windows/path_error.h"
#include "port/windows/security.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

namespace port
{

namespace
{

constexpr std::intptr_t kClosed = -1; // INVALID_HANDLE_VALUE
constexpr std::size_t kMostAtOnce = std::size_t{64} * 1024 * 1024;

HANDLE HandleOf(std::intptr_t native)
{
    // Headers of every platform hold it as a number. NOLINTNEXTLINE(performance-no-int-to-ptr)
    return reinterpret_cast<HANDLE>(native);
}

struct Opening
{
    DWORD access;
    DWORD disposition;
    DWORD flags;
};

Opening OpeningOf(OpenMode mode)
{
    switch (mode)
    {
    case OpenMode::Read:
        return {GENERIC_READ, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL};
    case OpenMode::CreateNew:
    case OpenMode::CreateNewForReaders:
        // A link of that name is there already; it is not followed.
        return {GENERIC_READ | GENERIC_WRITE, CREATE_NEW,
                FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT};
    case OpenMode::AppendNoLink:
        return {GENERIC_READ | FILE_APPEND_DATA, OPEN_ALWAYS,
                FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT};
    case OpenMode::Append:
        break;
    }
    // Without the right to write elsewhere the system looks up the end with each write, so that
    // several writers do not meet.
    return {GENERIC_READ | FILE_APPEND_DATA, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL};
}

// What is opened without following links may be a link itself.
bool IsLinkItself(HANDLE file)
{
    BY_HANDLE_FILE_INFORMATION information{};
    return GetFileInformationByHandle(file, &information) == 0 ||
           (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

struct HandleCloser
{
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};

} // namespace

File::~File()
{
    Close();
}

File::File(File&& other) noexcept : m_native(std::exchange(other.m_native, kClosed)) {}

File& File::operator=(File&& other) noexcept
{
    if (this != &other)
    {
        Close();
        m_native = std::exchange(other.m_native, kClosed);
    }
    return *this;
}

bool File::Open(const char* path, OpenMode mode)
{
    Close();
    const std::wstring native = NativePath(path);
    const Opening opening = OpeningOf(mode);
    const bool isOwnersOnly = mode == OpenMode::CreateNew || mode == OpenMode::Append;
    SECURITY_ATTRIBUTES* const security = isOwnersOnly ? OwnerOnly() : nullptr;
    if (isOwnersOnly && security == nullptr)
    {
        return false;
    }
    const DWORD before = GetLastError();
    const HANDLE file =
        CreateFileW(native.c_str(), opening.access, FILE_SHARE_READ | FILE_SHARE_WRITE, security,
                    opening.disposition, opening.flags, nullptr);
    if (file == INVALID_HANDLE_VALUE)
    {
        return FailOnPath();
    }
    if (mode == OpenMode::AppendNoLink && IsLinkItself(file))
    {
        CloseHandle(file);
        SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    // Opening a file that is there says so as an error.
    SetLastError(before);
    m_native = reinterpret_cast<std::intptr_t>(file);
    return true;
}

bool File::IsOpen() const noexcept
{
    return m_native != kClosed;
}

std::int64_t File::Read(void* buffer, std::size_t size)
{
    std::size_t done = 0;
    do
    {
        DWORD got = 0;
        if (ReadFile(HandleOf(m_native), static_cast<char*>(buffer) + done,
                     static_cast<DWORD>(std::min(size - done, kMostAtOnce)), &got, nullptr) == 0)
        {
            return -1;
        }
        if (got == 0)
        {
            break;
        }
        done += got;
    } while (done < size);
    return static_cast<std::int64_t>(done);
}

bool File::Write(const void* bytes, std::size_t size)
{
    std::size_t done = 0;
    do
    {
        DWORD put = 0;
        if (WriteFile(HandleOf(m_native), static_cast<const char*>(bytes) + done,
                      static_cast<DWORD>(std::min(size - done, kMostAtOnce)), &put, nullptr) == 0)
        {
            return false;
        }
        done += put;
    } while (done < size);
    return true;
}

bool File::Flush()
{
    return FlushFileBuffers(HandleOf(m_native)) != 0;
}

bool File::Seek(std::int64_t position)
{
    LARGE_INTEGER target;
    target.QuadPart = position;
    return SetFilePointerEx(HandleOf(m_native), target, nullptr, FILE_BEGIN) != 0;
}

std::int64_t File::Size() const
{
    LARGE_INTEGER size;
    return GetFileSizeEx(HandleOf(m_native), &size) != 0 ? size.QuadPart : -1;
}

bool File::Truncate(std::int64_t size)
{
    // By a handle of its own: this one may have the right to append only, and keeps its place.
    const HANDLE other =
        ReOpenFile(HandleOf(m_native), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, 0);
    if (other == INVALID_HANDLE_VALUE)
    {
        return false;
    }
    const std::unique_ptr<void, HandleCloser> closer(other);
    LARGE_INTEGER end;
    end.QuadPart = size;
    return SetFilePointerEx(other, end, nullptr, FILE_BEGIN) != 0 && SetEndOfFile(other) != 0;
}

bool File::LockExclusive()
{
    // The lock covers one byte far behind every file's end, so that it hinders no reading: locks
    // are binding here.
    OVERLAPPED place;
    std::memset(&place, 0, sizeof place);
    place.OffsetHigh = 0x7FFFFFFFU;
    return LockFileEx(HandleOf(m_native), LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &place) != 0;
}

void File::Close() noexcept
{
    if (IsOpen())
    {
        // Closing succeeds without a word; what came before must still be told.
        const DWORD before = GetLastError();
        CloseHandle(HandleOf(m_native));
        SetLastError(before);
        m_native = kClosed;
    }
}

} // namespace port
