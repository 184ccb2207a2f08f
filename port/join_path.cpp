#include "port/files.h"

namespace port
{

std::string JoinPath(std::string_view folder, std::string_view name)
{
    std::string path(folder);
    if (!path.empty() && !IsPathSeparator(path.back()))
    {
        path += PathSeparator();
    }
    return path.append(name);
}

} // namespace port
