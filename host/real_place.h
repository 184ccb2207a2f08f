#pragma once

#include <string>

namespace host
{

/// The folder that a file or folder lies in, or would lie in: of "a/b/" it is "a".
std::string FolderAbove(const std::string& path);

/// Whether `path` is `folder` or lies below it, links followed; what is not there yet lies where
/// its folder does. Both are UTF-8. False where neither is there.
bool LiesWithin(const std::string& path, const std::string& folder);

} // namespace host
