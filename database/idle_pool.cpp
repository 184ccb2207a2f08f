#include "database/idle_pool.h"

#include "database/connection.h"
#include "port/cancellation.h"
#include "port/environment.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <utility>

namespace database
{

IdlePool::IdlePool() : m_process(GetCurrentProcessId()) {}

IdlePool::~IdlePool()
{
    Empty();
}

std::shared_ptr<Connection> IdlePool::Take(const std::string& key, Clock::time_point now)
{
    std::shared_ptr<Connection> taken = TakeUntested(key, now);
    while (taken != nullptr && !taken->IsAlive())
    {
        taken = TakeUntested(key, now);
    }
    return taken;
}

std::shared_ptr<Connection> IdlePool::TakeUntested(const std::string& key, Clock::time_point now)
{
    std::vector<Entry> expired; // closed after the lock is given back: closing may take long
    const std::lock_guard lock(m_mutex);
    AbandonAfterFork();
    expired = RemoveExpired(now);
    const auto found =
        std::find_if(m_entries.rbegin(), m_entries.rend(),
                     [&key](const Entry& each) { return each.connection->Key() == key; });
    if (found == m_entries.rend())
    {
        return nullptr;
    }
    std::shared_ptr<Connection> taken = std::move(found->connection);
    m_entries.erase(std::next(found).base());
    return taken;
}

void IdlePool::Put(std::shared_ptr<Connection> connection, Clock::time_point now)
{
    // A cursor that is still open on it would meet the next user.
    if (connection.use_count() != 1 || !connection->Release())
    {
        return;
    }
    std::vector<Entry> expired;
    const std::lock_guard lock(m_mutex);
    AbandonAfterFork();
    expired = RemoveExpired(now);
    if (HasPlaceFor(connection->Key()))
    {
        m_entries.push_back({std::move(connection), now});
    }
}

std::vector<IdlePool::Entry> IdlePool::RemoveExpired(Clock::time_point now)
{
    const auto stays =
        std::find_if(m_entries.begin(), m_entries.end(),
                     [now](const Entry& each) { return now - each.since < kLongestIdle; });
    std::vector<Entry> expired(std::make_move_iterator(m_entries.begin()),
                               std::make_move_iterator(stays));
    m_entries.erase(m_entries.begin(), stays);
    return expired;
}

bool IdlePool::HasPlaceFor(const std::string& key) const
{
    const auto ofKey =
        std::count_if(m_entries.begin(), m_entries.end(),
                      [&key](const Entry& each) { return each.connection->Key() == key; });
    return m_entries.size() < kMostInAll && static_cast<std::size_t>(ofKey) < kMostPerKey;
}

void IdlePool::AbandonAfterFork()
{
    const DWORD process = GetCurrentProcessId();
    if (std::exchange(m_process, process) == process)
    {
        return;
    }
    // The connections belong to the parent: a farewell from here would end them for it too.
    for (Entry& each : m_entries)
    {
        each.connection->Abandon();
    }
    m_entries.clear();
}

void IdlePool::Empty() noexcept
{
    std::vector<Entry> all;
    const std::lock_guard lock(m_mutex);
    AbandonAfterFork();
    all.swap(m_entries);
}

std::size_t IdlePool::Count() const
{
    const std::lock_guard lock(m_mutex);
    return m_entries.size();
}

namespace
{

enum class PoolState
{
    NotMade,
    InUse,
    Gone, ///< the library is being unloaded
};

// Without a destructor: objects that end later than the pool still ask for it.
std::atomic<PoolState> g_state{PoolState::NotMade};

class ProcessPool
{
public:
    ProcessPool() { g_state = PoolState::InUse; }
    ~ProcessPool()
    {
        g_state = PoolState::Gone;
        const port::CancellationHold hold;
        m_pool.Empty();
    }
    ProcessPool(const ProcessPool&) = delete;
    ProcessPool& operator=(const ProcessPool&) = delete;

    IdlePool& Pool() noexcept { return m_pool; }

private:
    IdlePool m_pool;
};

/// Made by the first connection that is given back, after its driver was loaded, and so ended
/// before whatever the driver ends at exit.
IdlePool& TheIdlePool()
{
    static ProcessPool pool;
    return pool.Pool();
}

bool IsSwitchedOff()
{
    return port::Environment("SIGNUTILS_POOL") == "0";
}

} // namespace

std::shared_ptr<Connection> TakeIdleConnection(const std::string& key)
{
    if (g_state != PoolState::InUse || IsSwitchedOff())
    {
        return nullptr;
    }
    return TheIdlePool().Take(key, IdlePool::Clock::now());
}

void PutIdleConnection(std::shared_ptr<Connection> connection)
{
    if (IsSwitchedOff())
    {
        EmptyIdlePool();
    }
    else if (g_state != PoolState::Gone)
    {
        TheIdlePool().Put(std::move(connection), IdlePool::Clock::now());
    }
}

void EmptyIdlePool() noexcept
{
    if (g_state == PoolState::InUse)
    {
        TheIdlePool().Empty();
    }
}

std::size_t IdleConnectionCount()
{
    return g_state == PoolState::InUse ? TheIdlePool().Count() : 0;
}

} // namespace database
