#include "port/plain_file.h"

#include "port/posix/native_text.h"
#include "port/posix/system_error.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace port
{

namespace
{

constexpr std::size_t kBlock = 65536;

PlainFile ReadFrom(int descriptor, std::size_t most, std::string& bytes)
{
    struct stat information = {};
    if (fstat(descriptor, &information) != 0 || !S_ISREG(information.st_mode))
    {
        return PlainFile::Other;
    }
    while (bytes.size() < most)
    {
        const std::size_t before = bytes.size();
        bytes.resize(before + std::min(kBlock, most - before));
        const ssize_t got = read(descriptor, bytes.data() + before, bytes.size() - before);
        bytes.resize(before + (got < 0 ? 0U : static_cast<std::size_t>(got)));
        if (got == 0)
        {
            break;
        }
        if (got < 0 && errno != EINTR)
        {
            FailWithErrno(ERROR_READ_FAULT);
            return PlainFile::Failed;
        }
    }
    return PlainFile::Read;
}

// A socket cannot be opened at all (ENXIO), nor a device without its driver.
PlainFile WhyNotOpened(const char* path)
{
    const int reason = errno;
    if (reason == ELOOP || reason == ENXIO || reason == ENODEV)
    {
        return PlainFile::Other;
    }
    FailOnPath(path);
    return reason == ENOENT ? PlainFile::Missing : PlainFile::Failed;
}

} // namespace

PlainFile ReadPlainFile(const char* path, std::size_t most, std::string& bytes)
{
    bytes.clear();
    const std::string native = NativePath(path);
    const int descriptor =
        open(native.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0)
    {
        return WhyNotOpened(native.c_str());
    }
    const PlainFile result = ReadFrom(descriptor, most, bytes);
    close(descriptor);
    return result;
}

} // namespace port
