#pragma once

// Being told of files that come into a folder.

#include "port/export.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace port
{

class SIGNUTILS_PORT_API FolderWatch
{
public:
    enum class Told
    {
        Nothing, ///< the time is up, or a signal came
        Names,   ///< files that were closed after writing, or moved in
        Changes, ///< something changed and nobody can tell what: look at the whole folder
        Gone,    ///< the folder was removed, renamed or unmounted
    };

    FolderWatch() noexcept = default;
    ~FolderWatch();
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    /// Begins to watch; what lies there already is not told. `folder` is Windows-1252. False with
    /// the reason as last error.
    [[nodiscard]] bool Open(const char* folder);

    /// Waits, at most so long. `names` are UTF-8 as the system gives them, maybe malformed. Windows
    /// tells Changes only.
    Told WaitFor(std::chrono::milliseconds time, std::vector<std::string>& names);

    void Close() noexcept;

private:
    std::intptr_t m_native = -1;
};

} // namespace port
