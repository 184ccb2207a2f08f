#include "host/real_place.h"

#include "host/order_path.h"
#include "port/file_identity.h"
#include "port/files.h"

namespace host
{

std::string FolderAbove(const std::string& path)
{
    std::string bare = path;
    while (bare.size() > 1 && port::IsPathSeparator(bare.back()))
    {
        bare.pop_back();
    }
    return FolderOf(bare);
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
