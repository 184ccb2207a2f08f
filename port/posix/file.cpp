#include "port/files.h"

#include "port/posix/native_text.h"
#include "port/posix/system_error.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace port
{

namespace
{

constexpr mode_t kOwnerOnly = 0600;
constexpr mode_t kForReaders = 0644;

int FlagsOf(OpenMode mode)
{
    switch (mode)
    {
    case OpenMode::Read:
        return O_RDONLY;
    case OpenMode::CreateNew:
    case OpenMode::CreateNewForReaders:
        return O_RDWR | O_CREAT | O_EXCL;
    case OpenMode::AppendNoLink:
        return O_RDWR | O_CREAT | O_APPEND | O_NOFOLLOW | O_NONBLOCK; // waits for no other end
    case OpenMode::Append:
        break;
    }
    return O_RDWR | O_CREAT | O_APPEND;
}

/// A folder can be opened for reading here; Windows refuses.
bool IsFolder(int descriptor)
{
    struct stat information = {};
    return fstat(descriptor, &information) == 0 && S_ISDIR(information.st_mode);
}

int DescriptorOf(std::intptr_t native)
{
    return static_cast<int>(native);
}

} // namespace

File::~File()
{
    Close();
}

File::File(File&& other) noexcept : m_native(std::exchange(other.m_native, -1)) {}

File& File::operator=(File&& other) noexcept
{
    if (this != &other)
    {
        Close();
        m_native = std::exchange(other.m_native, -1);
    }
    return *this;
}

bool File::Open(const char* path, OpenMode mode)
{
    Close();
    const std::string native = NativePath(path);
    const int descriptor = open(native.c_str(), FlagsOf(mode) | O_CLOEXEC | O_NOCTTY, kOwnerOnly);
    if (descriptor < 0)
    {
        return FailOnPath(native.c_str());
    }
    if (IsFolder(descriptor))
    {
        close(descriptor);
        SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    if (mode == OpenMode::CreateNewForReaders)
    {
        // A file system without modes of its own refuses: there the mount says who may read.
        static_cast<void>(fchmod(descriptor, kForReaders));
    }
    m_native = descriptor;
    return true;
}

bool File::IsOpen() const noexcept
{
    return m_native >= 0;
}

std::int64_t File::Read(void* buffer, std::size_t size)
{
    std::size_t done = 0;
    while (done < size)
    {
        const ssize_t got =
            read(DescriptorOf(m_native), static_cast<char*>(buffer) + done, size - done);
        if (got == 0)
        {
            break;
        }
        if (got < 0 && errno != EINTR)
        {
            FailWithErrno(ERROR_READ_FAULT);
            return -1;
        }
        done += got < 0 ? 0U : static_cast<std::size_t>(got);
    }
    return static_cast<std::int64_t>(done);
}

bool File::Write(const void* bytes, std::size_t size)
{
    std::size_t done = 0;
    while (done < size)
    {
        const ssize_t put =
            write(DescriptorOf(m_native), static_cast<const char*>(bytes) + done, size - done);
        if (put < 0 && errno != EINTR)
        {
            return FailWithErrno(ERROR_WRITE_FAULT);
        }
        done += put < 0 ? 0U : static_cast<std::size_t>(put);
    }
    return IsOpen() || FailWithErrno(ERROR_WRITE_FAULT);
}

bool File::Flush()
{
    return fsync(DescriptorOf(m_native)) == 0 || FailWithErrno(ERROR_WRITE_FAULT);
}

bool File::Seek(std::int64_t position)
{
    return lseek(DescriptorOf(m_native), position, SEEK_SET) >= 0 || FailWithErrno();
}

std::int64_t File::Size() const
{
    struct stat information = {};
    if (fstat(DescriptorOf(m_native), &information) != 0)
    {
        FailWithErrno();
        return -1;
    }
    return information.st_size;
}

bool File::Truncate(std::int64_t size)
{
    return ftruncate(DescriptorOf(m_native), size) == 0 || FailWithErrno(ERROR_WRITE_FAULT);
}

bool File::LockExclusive()
{
    // flock belongs to the open file, so two File objects of one process exclude each other too.
    while (flock(DescriptorOf(m_native), LOCK_EX) != 0)
    {
        if (errno != EINTR)
        {
            return FailWithErrno();
        }
    }
    return true;
}

void File::Close() noexcept
{
    if (m_native >= 0)
    {
        close(DescriptorOf(m_native));
        m_native = -1;
    }
}

} // namespace port
