#pragma once

#include "host/batch/journal_lines.h"
#include "port/files.h"
#include "port/lock_file.h"

#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace batch
{

/// Which orders were judged, over the ends of processes: a file of JSON lines, one when an order is
/// begun, on disk before the library is asked, and one when it is done. So a file that was begun
/// and is not done is the only one whose answer may be lost, and the history tells.
///
/// What it says decides whether an order is judged. So it must be the user's alone, with its
/// folder, and is never opened through a link.
///
/// One process at a time; its threads may share it.
class ProgressJournal
{
public:
    /// Opens or creates it; `path` is absolute, UTF-8. Raises host::Refusal with kCouldNotRun when
    /// another process works with it, when others than this user may have written it, when it
    /// cannot be written, when a line of it cannot be read, or when it is another file, which is
    /// left as it is. `holder` says who asks.
    ProgressJournal(const std::string& path, const std::string& holder);
    ProgressJournal(const ProgressJournal&) = delete;
    ProgressJournal& operator=(const ProgressJournal&) = delete;

    const std::string& Path() const noexcept { return m_path; }

    /// Makes sure that what it says is about this database (see DatabaseIdentity); a journal of no
    /// order becomes its. Raises host::Refusal with kCouldNotRun when it is another one's.
    void RequireDatabase(const std::string& database);

    /// Nothing when the order is not known, also when the file was replaced or changed since.
    std::optional<Progress> Find(const std::string& key, const std::string& version) const;
    bool IsDone(const std::string& key, const std::string& version) const;

    // Raise host::Refusal with kCouldNotRun when the disk does not take the line.
    void Begin(const std::string& key, const std::string& version, long long after,
               const std::string& asked);
    void Done(const std::string& key, const std::string& version, const std::string& outcome);
    /// It was begun and the library did not judge: it is as if it had never been begun.
    void GiveUp(const std::string& key);

    /// Leaves out what is not needed any more: `isThere` tells whether the file of a key still is.
    /// Done orders are remembered for 30 days after their files have gone.
    template <typename IsThere>
    void Tidy(IsThere&& isThere)
    {
        const long long oldest = Now() - kRememberedSeconds;
        std::erase_if(
            m_known, [&](const auto& entry)
            { return entry.second.isDone && entry.second.at < oldest && !isThere(entry.first); });
        RewriteIfLong();
    }

private:
    static constexpr long long kRememberedSeconds = 30LL * 24 * 3600;

    static long long Now();
    void RequireOwnFolder() const;
    void TakeLock(const std::string& holder);
    void RequireOwnFile() const;
    void Open();
    void Read();
    void CutOff();
    void Write(const std::string& line, bool isFlushed);
    void RewriteIfLong();
    [[noreturn]] void Refuse(const std::string& what, const std::string& remedy) const;

    std::string m_path;
    std::string m_narrow; ///< the same in Windows-1252
    port::LockFile m_lock;
    port::File m_file;
    std::size_t m_lines = 0;
    std::size_t m_whole = 0; ///< bytes of whole lines found
    std::string m_database;  ///< that its lines are about
    std::unordered_map<std::string, Progress> m_known;
    mutable std::mutex m_mutex;
};

} // namespace batch
