#pragma once

#include "port/kernel.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace database
{

class Connection;

/// Connections that wait for their next use, by the exact connection string. Any thread.
///
/// The library has no thread of its own, so what has waited too long is closed at the next use of
/// the pool. Times come from the caller.
class IdlePool
{
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::size_t kMostPerKey = 8;
    static constexpr std::size_t kMostInAll = 64;
    static constexpr std::chrono::seconds kLongestIdle{60};

    IdlePool();
    ~IdlePool();
    IdlePool(const IdlePool&) = delete;
    IdlePool& operator=(const IdlePool&) = delete;

    /// The living connection of this key that came last, or null.
    std::shared_ptr<Connection> Take(const std::string& key, Clock::time_point now);
    /// Keeps the connection when it is fit for another user and there is a place, else closes it.
    void Put(std::shared_ptr<Connection> connection, Clock::time_point now);
    void Empty() noexcept;
    std::size_t Count() const;

private:
    struct Entry
    {
        std::shared_ptr<Connection> connection;
        Clock::time_point since;
    };

    std::shared_ptr<Connection> TakeUntested(const std::string& key, Clock::time_point now);
    std::vector<Entry> RemoveExpired(Clock::time_point now);
    bool HasPlaceFor(const std::string& key) const;
    void AbandonAfterFork();

    mutable std::mutex m_mutex;
    std::vector<Entry> m_entries; // oldest first
    DWORD m_process;
};

// The process's own pool, off while SIGNUTILS_POOL is 0, emptied when the library is unloaded.

std::shared_ptr<Connection> TakeIdleConnection(const std::string& key);
void PutIdleConnection(std::shared_ptr<Connection> connection);
void EmptyIdlePool() noexcept;
std::size_t IdleConnectionCount();

} // namespace database
