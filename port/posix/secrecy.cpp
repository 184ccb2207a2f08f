#include "port/secrecy.h"

#include "port/posix/native_text.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace port
{

void KeepMemoryPrivate() noexcept
{
    // The limit stops core files; where the system hands cores to a program, only the second does.
    const rlimit none = {0, 0};
    static_cast<void>(setrlimit(RLIMIT_CORE, &none));
    static_cast<void>(prctl(PR_SET_DUMPABLE, 0, 0, 0, 0));
}

FileRights RightsOf(const char* path)
{
    struct stat information = {};
    FileRights rights;
    if (stat(NativePath(path).c_str(), &information) != 0)
    {
        return rights;
    }
    rights.othersMayRead = (information.st_mode & (S_IRGRP | S_IROTH)) != 0;
    rights.othersMayWrite = (information.st_mode & (S_IWGRP | S_IWOTH)) != 0;
    rights.everybodyMayWrite = (information.st_mode & S_IWOTH) != 0;
    rights.isSticky = (information.st_mode & S_ISVTX) != 0;
    char mode[8] = {};
    std::snprintf(mode, sizeof mode, "%04o", static_cast<unsigned>(information.st_mode & 07777U));
    rights.mode = mode;
    return rights;
}

bool IsWritableFile(const char* path)
{
    return faccessat(AT_FDCWD, NativePath(path).c_str(), W_OK, AT_EACCESS) == 0;
}

bool BelongsToOther(const char* path)
{
    struct stat information = {};
    return stat(NativePath(path).c_str(), &information) == 0 && information.st_uid != geteuid();
}

bool IsLink(const char* path)
{
    struct stat information = {};
    return lstat(NativePath(path).c_str(), &information) == 0 && S_ISLNK(information.st_mode);
}

} // namespace port
