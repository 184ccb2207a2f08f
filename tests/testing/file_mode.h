#pragma once

#include <filesystem>
#include <string>

#include <sys/stat.h>

namespace testing_support
{

/// Mode bits of a file or folder (0600), the sticky one included; POSIX only.
inline unsigned ModeOf(const std::string& path)
{
    return static_cast<unsigned>(std::filesystem::status(path).permissions()) & 07777U;
}

/// Sets the mask that takes rights from new files, for a scope.
class ScopedMask
{
public:
    explicit ScopedMask(mode_t mask) : m_before(umask(mask)) {}
    ~ScopedMask() { umask(m_before); }
    ScopedMask(const ScopedMask&) = delete;
    ScopedMask& operator=(const ScopedMask&) = delete;

private:
    mode_t m_before;
};

} // namespace testing_support
