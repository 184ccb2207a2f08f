#include "database/connect_turn.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>

namespace database
{

namespace
{

// Without destructors, so that a connect while the process ends finds them whole.
std::shared_mutex g_turns;
std::array<std::atomic<std::uint64_t>, 16> g_loaded; // 0: free

bool IsLoaded(std::uint64_t driver)
{
    return std::any_of(g_loaded.begin(), g_loaded.end(),
                       [driver](const auto& each) { return each.load() == driver; });
}

} // namespace

ConnectTurn::ConnectTurn(const std::string& driver)
    : m_driver(std::max<std::uint64_t>(std::hash<std::string>()(driver), 1)),
      m_alone(g_turns, std::defer_lock), m_beside(g_turns, std::defer_lock)
{
    if (IsLoaded(m_driver))
    {
        m_beside.lock();
    }
    else
    {
        m_alone.lock();
    }
}

void ConnectTurn::Reached() noexcept
{
    // With every place taken, a further driver's connects keep going alone.
    if (!m_alone.owns_lock() || IsLoaded(m_driver))
    {
        return;
    }
    const auto place = std::find_if(g_loaded.begin(), g_loaded.end(),
                                    [](const auto& each) { return each.load() == 0; });
    if (place != g_loaded.end())
    {
        place->store(m_driver);
    }
}

} // namespace database
