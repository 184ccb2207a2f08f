#include "port/file_identity.h"

#include <sys/stat.h>

namespace port
{

FileIdentity IdentifyFile(const std::string& path)
{
    struct stat information = {};
    if (stat(path.c_str(), &information) != 0)
    {
        return {};
    }
    return {static_cast<std::uint64_t>(information.st_dev),
            static_cast<std::uint64_t>(information.st_ino)};
}

} // namespace port
