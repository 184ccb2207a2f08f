#pragma once

// A lock between processes that is a file of its own. The system gives it back when its holder
// dies, so that nobody has to judge whether a lock is stale.

#include "port/export.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace port
{

class SIGNUTILS_PORT_API LockFile
{
public:
    enum class Attempt
    {
        Taken,
        Held,   ///< by another process, or by another LockFile of this one
        Failed, ///< with the reason as last error: a folder that cannot be written, a link, a
                ///< folder
    };

    LockFile() noexcept = default;
    ~LockFile();
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;

    /// Takes the lock or tells at once why not; never waits. `path` is Windows-1252. `note` is
    /// written into the file for people: who holds it. What a dead holder left is taken over.
    [[nodiscard]] Attempt TryTake(const char* path, std::string_view note);

    bool IsTaken() const noexcept;
    /// Removes the file and gives the lock back; nothing when it was not taken.
    void GiveBack() noexcept;

private:
    std::intptr_t m_native = -1;
    std::string m_path; ///< in the platform's own bytes
};

/// What the holder of a lock wrote into it; empty when there is none or it cannot be read.
SIGNUTILS_PORT_API std::string NoteOfLock(const char* path);

} // namespace port
