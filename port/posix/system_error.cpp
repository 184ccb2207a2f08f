#include "port/posix/system_error.h"

#include <cerrno>
#include <string>
#include <sys/stat.h>

namespace port
{

namespace
{

bool FolderAboveIsThere(const std::string& path)
{
    const std::size_t end = path.find_last_of('/');
    if (end == std::string::npos)
    {
        return !path.empty();
    }
    struct stat information = {};
    const std::string folder = end == 0 ? "/" : path.substr(0, end);
    return stat(folder.c_str(), &information) == 0 && S_ISDIR(information.st_mode);
}

} // namespace

DWORD ErrorOf(int errnoValue, DWORD otherwise)
{
    switch (errnoValue)
    {
    case ENOENT:
        return ERROR_FILE_NOT_FOUND;
    case ENOTDIR:
        return ERROR_PATH_NOT_FOUND;
    case EMFILE:
    case ENFILE:
        return ERROR_TOO_MANY_OPEN_FILES;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case ELOOP:
        return ERROR_ACCESS_DENIED;
    case EBADF:
        return ERROR_INVALID_HANDLE;
    case ENOMEM:
        return ERROR_NOT_ENOUGH_MEMORY;
    case EXDEV:
        return ERROR_NOT_SAME_DEVICE;
    case EBUSY:
    case ETXTBSY:
        return ERROR_SHARING_VIOLATION;
    case EEXIST:
        return ERROR_FILE_EXISTS;
    case ENOTEMPTY:
        return ERROR_DIR_NOT_EMPTY;
    case EINVAL:
        return ERROR_INVALID_PARAMETER;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return ERROR_DISK_FULL;
    case ENAMETOOLONG:
        return ERROR_INVALID_NAME;
    default:
        return otherwise;
    }
}

bool FailWithErrno(DWORD otherwise)
{
    SetLastError(ErrorOf(errno, otherwise));
    return false;
}

bool FailOnPath(const char* nativePath)
{
    const int reason = errno;
    const bool isPath = reason == ENOENT && !FolderAboveIsThere(nativePath);
    SetLastError(isPath ? ERROR_PATH_NOT_FOUND : ErrorOf(reason));
    return false;
}

} // namespace port
