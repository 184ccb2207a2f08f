#pragma once

#include <cstdint>
#include <string>

namespace testing_support
{

// Faults of the system's file calls for files and folders below one folder, in this process: the
// library opens and writes as always, and the system refuses. A test program links
// signutils_failing_files. One at a time, one thread at a time.

enum class FileCall : unsigned
{
    Open,
    Read,
    Write,
    Flush,
    Truncate,
    Lock,
    Rename,
    Delete,
    MakeFolder,
    Count,
};

constexpr std::uint32_t Bit(FileCall call)
{
    return std::uint32_t{1} << static_cast<unsigned>(call);
}

inline constexpr std::uint32_t kEveryFileCall = Bit(FileCall::Count) - 1;

struct FilePlan
{
    std::uint64_t failing = 0; ///< number of the call, from 1; 0 for none
    bool fromThenOn = false;
    int error = 0;                        ///< an errno; 0: half of what is read or written
    std::uint32_t calls = kEveryFileCall; ///< the calls that count
};

/// In force while it lives.
class FileFault
{
public:
    FileFault(const std::string& folder, const FilePlan& plan);
    ~FileFault();
    FileFault(const FileFault&) = delete;
    FileFault& operator=(const FileFault&) = delete;

    std::uint64_t Counted() const noexcept;
    bool WasUsed() const noexcept;
    /// The first call that failed, for messages.
    FileCall Hit() const noexcept;
    const std::string& HitPath() const noexcept;
};

} // namespace testing_support
