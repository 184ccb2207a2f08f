#pragma once

#include "port/files.h"

#include <string>

namespace services
{

/// The endings of the files of one spool.
inline constexpr char kSpoolEvents[] = ".jsonl";
inline constexpr char kSpoolAppendLock[] = ".append.lock";

/// Held until it is destroyed. Files of their own carry the locks: the locked file is never the one
/// that is replaced or deleted under a waiting process.
class SpoolLock
{
public:
    explicit SpoolLock(const std::string& path)
        : m_held(m_file.Open(path.c_str(), port::OpenMode::Append) && m_file.LockExclusive())
    {
    }
    bool IsHeld() const noexcept { return m_held; }

private:
    port::File m_file;
    bool m_held;
};

} // namespace services
