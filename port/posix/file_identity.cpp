#include "port/file_identity.h"

#include <cstdlib>
#include <memory>
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

std::string StampOf(const std::string& path)
{
    struct stat information = {};
    if (stat(path.c_str(), &information) != 0)
    {
        return {};
    }
    return std::to_string(information.st_ino) + "/" + std::to_string(information.st_ctim.tv_sec) +
           "." + std::to_string(information.st_ctim.tv_nsec);
}

std::string RealPath(const std::string& path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                           &std::free);
    return real != nullptr ? std::string(real.get()) : std::string();
}

} // namespace port
