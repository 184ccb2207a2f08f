#include "host/real_place.h"

#include "host/order_path.h"
#include "port/file_identity.h"
#include "port/files.h"

namespace host
{

namespace
{

// The root of a drive keeps its separator: C: is the folder that one is in there.
std::string WithoutEnd(std::string path)
{
    while (path.size() > 1 && port::IsPathSeparator(path.back()) && path[path.size() - 2] != ':')
    {
        path.pop_back();
    }
    return path;
}

} // namespace

std::string FolderAbove(const std::string& path)
{
    return WithoutEnd(FolderOf(WithoutEnd(path)));
}

bool LiesWithin(const std::string& path, const std::string& folder)
{
    const std::string outer = folder.empty() ? std::string() : port::RealPath(folder);
    const std::string itself = port::RealPath(path);
    const std::string inner = itself.empty() ? port::RealPath(FolderAbove(path)) : itself;
    if (outer.empty() || !inner.starts_with(outer))
    {
        return false;
    }
    return inner.size() == outer.size() || port::IsPathSeparator(outer.back()) ||
           port::IsPathSeparator(inner[outer.size()]);
}

} // namespace host
