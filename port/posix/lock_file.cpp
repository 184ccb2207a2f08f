#include "port/lock_file.h"

#include "port/posix/native_text.h"
#include "port/posix/system_error.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace port
{

namespace
{

constexpr mode_t kOwnerOnly = 0600;
constexpr std::size_t kLongestNote = 256;

int OpenLock(const std::string& path)
{
    return open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NOFOLLOW | O_NONBLOCK,
                kOwnerOnly);
}

// The holder before may have removed the file between our opening and our lock: then the lock is
// on a file that nobody else will ever open.
bool IsStillThere(int descriptor, const std::string& path)
{
    struct stat ours = {};
    struct stat there = {};
    return fstat(descriptor, &ours) == 0 && lstat(path.c_str(), &there) == 0 &&
           ours.st_dev == there.st_dev && ours.st_ino == there.st_ino;
}

bool IsRegular(int descriptor)
{
    struct stat information = {};
    return fstat(descriptor, &information) == 0 && S_ISREG(information.st_mode);
}

// For people only: a lock holds without it, too.
void WriteNote(int descriptor, std::string_view note)
{
    if (ftruncate(descriptor, 0) == 0)
    {
        static_cast<void>(!write(descriptor, note.data(), note.size()));
    }
}

LockFile::Attempt Lock(int descriptor)
{
    while (flock(descriptor, LOCK_EX | LOCK_NB) != 0)
    {
        if (errno == EWOULDBLOCK)
        {
            return LockFile::Attempt::Held;
        }
        if (errno != EINTR)
        {
            FailWithErrno();
            return LockFile::Attempt::Failed;
        }
    }
    return LockFile::Attempt::Taken;
}

} // namespace

LockFile::~LockFile()
{
    GiveBack();
}

LockFile::Attempt LockFile::TryTake(const char* path, std::string_view note)
{
    GiveBack();
    const std::string native = NativePath(path);
    for (;;)
    {
        const int descriptor = OpenLock(native);
        if (descriptor < 0)
        {
            FailOnPath(native.c_str());
            return Attempt::Failed;
        }
        if (!IsRegular(descriptor))
        {
            close(descriptor);
            SetLastError(ERROR_ACCESS_DENIED);
            return Attempt::Failed;
        }
        const Attempt attempt = Lock(descriptor);
        if (attempt == Attempt::Taken && IsStillThere(descriptor, native))
        {
            WriteNote(descriptor, note);
            m_native = descriptor;
            m_path = native;
            return attempt;
        }
        close(descriptor);
        if (attempt != Attempt::Taken)
        {
            return attempt;
        }
    }
}

bool LockFile::IsTaken() const noexcept
{
    return m_native >= 0;
}

void LockFile::GiveBack() noexcept
{
    if (!IsTaken())
    {
        return;
    }
    // Removed while it is held, so that nobody else's is removed.
    unlink(m_path.c_str());
    close(static_cast<int>(m_native));
    m_native = -1;
}

std::string NoteOfLock(const char* path)
{
    const int descriptor =
        open(NativePath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0)
    {
        return {};
    }
    char text[kLongestNote] = {};
    const ssize_t size = read(descriptor, text, sizeof text);
    close(descriptor);
    return size > 0 ? std::string(text, static_cast<std::size_t>(size)) : std::string();
}

} // namespace port
