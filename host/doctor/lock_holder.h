#pragma once

#include <string>

namespace doctor
{

/// Who holds a lock, as its note says.
struct LockHolder
{
    std::string note;
    bool isGone = false; ///< of this machine, and its process does not run any more
};

/// `lock` is the path of a lock file, UTF-8. Nobody is gone of whom it cannot be told.
LockHolder HolderOf(const std::string& lock);

} // namespace doctor
