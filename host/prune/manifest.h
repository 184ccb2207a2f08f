#pragma once

#include "host/prune/archive.h"

#include <optional>
#include <string>
#include <vector>

namespace prune
{

/// What an archive holds. It is written last: an archive that has one is whole.
struct Manifest
{
    std::string before;     ///< the day
    std::string made;       ///< local time
    std::string database;   ///< without its password; texts are UTF-8
    std::string store;      ///< the hand-off store
    std::uint64_t kept = 0; ///< old events left in the journal for other spools
    std::vector<ArchivedFile> files;
};

/// The folder of one archive, held by one prune at a time.
class ArchiveFolder
{
public:
    /// Makes the folder, for its owner only, where it is missing, and waits for its lock. Raises
    /// Refusal for one that holds something else or an archive whose removal is done. `path` is
    /// Windows-1252.
    explicit ArchiveFolder(std::string path);

    const std::string& Path() const noexcept { return m_path; }

    /// The manifest of an archive whose removal was interrupted; none: it is to be made. Raises
    /// Refusal for one that is damaged.
    std::optional<Manifest> ReadManifest() const;
    void Write(const Manifest& manifest) const;

    /// Tells for good that what the archive holds was removed.
    void MarkRemoved(const std::string& json) const;

private:
    void RefuseStrangers() const;

    std::string m_path;
    port::File m_lock;
};

/// Reads all files of the archive again. Raises Refusal when one is not what was written.
void VerifyArchive(const std::string& folder, const Manifest& manifest);

} // namespace prune
