#include "port/files.h"

#include "port/posix/native_text.h"
#include "port/posix/system_error.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace port
{

namespace
{

bool IsFolderNative(const std::string& path)
{
    struct stat information = {};
    return stat(path.c_str(), &information) == 0 && S_ISDIR(information.st_mode);
}

/// Every user could put files of theirs in the place of ours. A sticky folder is shared by
/// everybody on purpose and is not ours to change.
bool TakeBackEverybodysWriting(const std::string& path, mode_t mode)
{
    const mode_t without = mode & 07777U & ~static_cast<mode_t>(S_IWOTH);
    const int descriptor =
        (mode & S_ISVTX) != 0 ? -1 : open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool taken = descriptor >= 0 && fchmod(descriptor, without) == 0;
    if (descriptor >= 0)
    {
        close(descriptor);
    }
    if (!taken)
    {
        SetLastError(ERROR_INVALID_ACL);
    }
    return taken;
}

/// Accepts what is there when it is a folder of the current user.
bool AcceptFolder(const std::string& path)
{
    struct stat information = {};
    if (stat(path.c_str(), &information) != 0)
    {
        return FailOnPath(path.c_str());
    }
    if (!S_ISDIR(information.st_mode))
    {
        SetLastError(ERROR_FILE_EXISTS);
        return false;
    }
    if (information.st_uid != geteuid())
    {
        SetLastError(ERROR_INVALID_OWNER);
        return false;
    }
    return (information.st_mode & S_IWOTH) == 0 ||
           TakeBackEverybodysWriting(path, information.st_mode);
}

/// Creates the folder and those above it; another process may create them at the same time.
bool MakeFolders(const std::string& path)
{
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1))
    {
        const std::string part = path.substr(0, end);
        if (mkdir(part.c_str(), 0700) != 0 && errno != EEXIST && !IsFolderNative(part))
        {
            return FailOnPath(part.c_str());
        }
        if (end == std::string::npos)
        {
            return true;
        }
    }
}

std::string WithoutFinalSeparators(std::string path)
{
    while (path.size() > 1 && path.back() == '/')
    {
        path.pop_back();
    }
    return path;
}

struct FolderCloser
{
    void operator()(DIR* folder) const noexcept { closedir(folder); }
};

} // namespace

bool FolderExists(const char* path)
{
    return IsFolderNative(NativePath(path));
}

bool FlushFolder(const char* folder)
{
    const std::string native = NativePath(folder);
    const int descriptor = open(native.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
    {
        return FailOnPath(native.c_str());
    }
    const bool flushed = fsync(descriptor) == 0 || FailWithErrno(ERROR_WRITE_FAULT);
    close(descriptor);
    return flushed;
}

bool CreatePrivateFolder(const char* folder)
{
    const std::string native = WithoutFinalSeparators(NativePath(folder));
    if (native.empty())
    {
        SetLastError(ERROR_PATH_NOT_FOUND);
        return false;
    }
    return MakeFolders(native) && AcceptFolder(native);
}

bool RemoveEmptyFolder(const char* folder)
{
    const std::string native = NativePath(folder);
    return rmdir(native.c_str()) == 0 || FailOnPath(native.c_str());
}

bool IsWritableFolder(const char* folder)
{
    const std::string native = NativePath(folder);
    return IsFolderNative(native) &&
           faccessat(AT_FDCWD, native.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

bool ListFolder(const char* folder, std::vector<std::string>& names)
{
    names.clear();
    const std::string native = NativePath(folder);
    const std::unique_ptr<DIR, FolderCloser> entries(opendir(native.c_str()));
    if (entries == nullptr)
    {
        return FailOnPath(native.c_str());
    }
    errno = 0;
    while (const dirent* const entry = readdir(entries.get()))
    {
        const std::string_view name = entry->d_name;
        std::string text;
        if (name != "." && name != ".." && TryFromNative(name, text))
        {
            names.push_back(std::move(text));
        }
    }
    if (errno != 0)
    {
        return FailWithErrno(ERROR_READ_FAULT);
    }
    std::sort(names.begin(), names.end());
    return true;
}

std::string TemporaryFolder()
{
    const char* const chosen = std::getenv("TMPDIR");
    const bool usable = chosen != nullptr && chosen[0] == '/';
    return FromNative(WithoutFinalSeparators(usable ? chosen : "/tmp"));
}

std::string ModuleFolder()
{
    Dl_info module = {};
    if (dladdr(reinterpret_cast<const void*>(&ModuleFolder), &module) == 0)
    {
        return std::string();
    }
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(module.dli_fname, nullptr),
                                                               &std::free);
    const std::string path = resolved != nullptr ? resolved.get() : module.dli_fname;
    const std::size_t end = path.find_last_of('/');
    return end == std::string::npos ? "."
                                    : FromNative(path.substr(0, std::max<std::size_t>(end, 1)));
}

} // namespace port
