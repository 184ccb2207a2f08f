#pragma once

#include <cstdint>
#include <mutex>
#include <string>

namespace database
{

/// A turn to connect. The driver manager's first load of a driver is not safe in two threads at
/// once, so a driver's connects take turns in the process until one has succeeded; after that they
/// go side by side, so that a server that hangs holds up nobody else.
class ConnectTurn
{
public:
    /// `driver` names driver or data source. Waits for the turn.
    explicit ConnectTurn(const std::string& driver);
    ConnectTurn(const ConnectTurn&) = delete;
    ConnectTurn& operator=(const ConnectTurn&) = delete;

    /// The connect has succeeded: the driver is loaded.
    void Succeeded() noexcept;

private:
    std::uint64_t m_driver;
    std::unique_lock<std::mutex> m_lock;
};

} // namespace database
