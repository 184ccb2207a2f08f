#include "port/files.h"

#include "port/posix/native_text.h"
#include "port/posix/system_error.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

/// Windows refuses a folder and a read-only file; unlink would remove the latter.
bool MayBeDeleted(const char* nativePath)
{
    struct stat information = {};
    if (lstat(nativePath, &information) != 0)
    {
        return port::FailOnPath(nativePath);
    }
    const bool writable = (information.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) != 0;
    if (S_ISDIR(information.st_mode) || (S_ISREG(information.st_mode) && !writable))
    {
        SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    return true;
}

bool HasWildcard(const char* path)
{
    const char* const separator = std::strrchr(path, '/');
    return std::strpbrk(separator == nullptr ? path : separator + 1, "*?") != nullptr;
}

/// Takes no memory to delete a file: it is what cleans up when memory has run out. Raises
/// std::bad_alloc on the way to a reason only.
bool Delete(LPCSTR path)
{
    char native[PATH_MAX];
    if (!port::TryNativePath(path, native, sizeof native) || HasWildcard(native))
    {
        SetLastError(ERROR_INVALID_NAME);
        return false;
    }
    if (*native == '\0')
    {
        SetLastError(ERROR_PATH_NOT_FOUND);
        return false;
    }
    return MayBeDeleted(native) && (unlink(native) == 0 || port::FailOnPath(native));
}

/// For file systems without the exchange in one step: a second name, then the first one goes.
bool LinkAndUnlink(const std::string& from, const std::string& to)
{
    if (link(from.c_str(), to.c_str()) != 0)
    {
        return port::FailOnPath(from.c_str());
    }
    return unlink(from.c_str()) == 0 || port::FailOnPath(from.c_str());
}

/// ENOENT of a rename may mean the source or the target's folder.
bool FailOnMove(const std::string& from, const std::string& to)
{
    const int reason = errno;
    struct stat information = {};
    const bool sourceIsThere = lstat(from.c_str(), &information) == 0;
    errno = reason;
    return port::FailOnPath((sourceIsThere ? to : from).c_str());
}

} // namespace

BOOL DeleteFileA(LPCSTR path)
{
    try
    {
        return Delete(path) ? TRUE : FALSE;
    }
    catch (const std::bad_alloc&)
    {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return FALSE;
    }
}

namespace port
{

char PathSeparator()
{
    return '/';
}

bool IsPathSeparator(char character)
{
    return character == '/';
}

bool FileExists(const char* path)
{
    struct stat information = {};
    return stat(NativePath(path).c_str(), &information) == 0 && S_ISREG(information.st_mode);
}

std::int64_t FileSize(const char* path)
{
    struct stat information = {};
    const bool isFile =
        stat(NativePath(path).c_str(), &information) == 0 && S_ISREG(information.st_mode);
    return isFile ? information.st_size : 0;
}

bool MoveFileReplacing(const char* from, const char* to)
{
    const std::string source = NativePath(from);
    const std::string target = NativePath(to);
    return rename(source.c_str(), target.c_str()) == 0 || FailOnMove(source, target);
}

bool MoveFileNoReplace(const char* from, const char* to)
{
    const std::string source = NativePath(from);
    const std::string target = NativePath(to);
    if (renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0)
    {
        return true;
    }
    if (errno == EINVAL || errno == ENOSYS)
    {
        return LinkAndUnlink(source, target);
    }
    return FailOnMove(source, target);
}

} // namespace port
