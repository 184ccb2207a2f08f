#pragma once

#include "port/lock_file.h"

#include <string>

namespace host
{

/// Keeps two hosts from judging or converting one order file at once: a lock file beside it,
/// ORDER.veu.lock. The system gives it back when its holder dies.
class OrderLock
{
public:
    /// `order` is Windows-1252; `holder` says who asks: "signcheck check".
    OrderLock(const std::string& order, const std::string& holder);

    bool IsTaken() const noexcept { return m_attempt == port::LockFile::Attempt::Taken; }
    /// Somebody else judges the order now.
    bool IsHeldByOther() const noexcept { return m_attempt == port::LockFile::Attempt::Held; }

    /// Ends it before the scope does.
    void GiveBack() noexcept { m_file.GiveBack(); }

    /// Why the order must not be judged now, with the remedy; UTF-8. For a lock that is held.
    std::string Obstacle() const;
    /// Why there is no lock though nobody holds it. For a lock that could not be made.
    std::string Failure() const;

private:
    std::string m_order;
    port::LockFile m_file;
    port::LockFile::Attempt m_attempt;
};

/// The lock file of an order file.
std::string OrderLockPath(const std::string& order);

/// What a lock file says of its holder: "signcheck watch, process 4711 on bank01".
std::string LockNote(const std::string& holder);

} // namespace host
