#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace batch
{

/// Which files of a drop folder are whole. A file is when the system told that it was closed or
/// moved in and nobody has it open to write; or, for one that was found there, when it stayed the
/// same for a while and nobody has it open. Knows no file system: who asks tells it what it sees.
class Readiness
{
public:
    using Clock = std::chrono::steady_clock;
    using Time = Clock::time_point;

    /// What a file looks like at the moment.
    struct Look
    {
        std::optional<std::string> version; ///< none: it is gone
        bool hasWriter = false;
    };

    explicit Readiness(std::chrono::milliseconds settle) : m_settle(settle) {}

    /// The system told that the file was closed after writing, or moved in.
    void Told(const std::string& name, Time now);
    /// It lies in the folder; nobody told how long.
    void Found(const std::string& name, Time now);
    /// It is to be looked at again at that time.
    void Postpone(const std::string& name, Time when);

    /// The files to look at now.
    std::vector<std::string> Due(Time now) const;
    /// What was seen of a file that is due. Whether it is whole; it is then no longer waited for.
    bool IsWhole(const std::string& name, const Look& look, Time now);
    void Forget(const std::string& name) { m_waiting.erase(name); }

    std::size_t Waiting() const { return m_waiting.size(); }

private:
    struct Candidate
    {
        Time due;
        bool wasTold = false;
        std::optional<std::string> version; ///< when it was looked at last
    };

    std::chrono::milliseconds m_settle;
    std::map<std::string, Candidate> m_waiting;
};

} // namespace batch
