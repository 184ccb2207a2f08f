#include "port/files.h"

#include "port/posix/native_text.h"
#include "port/posix/system_error.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
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

bool HasWildcard(const std::string& path)
{
    const std::size_t name = path.find_last_of('/') + 1; // npos + 1 is 0: the whole path
    return path.find_first_of("*?", name) != std::string::npos;
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
    const std::string native = port::NativePath(path);
    if (native.empty())
    {
        SetLastError(ERROR_PATH_NOT_FOUND);
        return FALSE;
    }
    if (HasWildcard(native))
    {
        SetLastError(ERROR_INVALID_NAME);
        return FALSE;
    }
    if (!MayBeDeleted(native.c_str()))
    {
        return FALSE;
    }
    return unlink(native.c_str()) == 0 || port::FailOnPath(native.c_str()) ? TRUE : FALSE;
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

std::string JoinPath(std::string_view folder, std::string_view name)
{
    std::string path(folder);
    if (!path.empty() && !IsPathSeparator(path.back()))
    {
        path += PathSeparator();
    }
    return path.append(name);
}

bool FileExists(const char* path)
{
    struct stat information = {};
    return stat(NativePath(path).c_str(), &information) == 0 && S_ISREG(information.st_mode);
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
