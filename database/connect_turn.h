#pragma once

#include <cstdint>
#include <mutex>
#include <shared_mutex>
#include <string>

namespace database
{

/// A turn to connect. The driver manager loads drivers through one error text for the whole
/// process, so a connect that may load one, or fail to, goes alone. Once a driver is known to be
/// loaded its connects go side by side, so that a server that hangs holds up nobody else.
class ConnectTurn
{
public:
    /// `driver` names driver or data source. Waits for the turn.
    explicit ConnectTurn(const std::string& driver);
    ConnectTurn(const ConnectTurn&) = delete;
    ConnectTurn& operator=(const ConnectTurn&) = delete;

    /// The connect has reached its driver, whatever that answered.
    void Reached() noexcept;

private:
    std::uint64_t m_driver;
    std::unique_lock<std::shared_mutex> m_alone;
    std::shared_lock<std::shared_mutex> m_beside;
};

} // namespace database
