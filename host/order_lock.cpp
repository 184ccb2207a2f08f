#include "host/order_lock.h"

#include "host/text.h"
#include "port/kernel.h"
#include "port/program.h"
#include "support/codepage.h"

namespace host
{

namespace
{

constexpr const char* kLockEnding = ".veu.lock";

} // namespace

std::string OrderLockPath(const std::string& order)
{
    return order + kLockEnding;
}

std::string LockNote(const std::string& holder)
{
    const std::string machine = port::MachineName();
    return holder + ", process " + std::to_string(GetCurrentProcessId()) +
           (machine.empty() ? std::string() : " on " + machine);
}

OrderLock::OrderLock(const std::string& order, const std::string& holder)
    : m_order(order), m_attempt(m_file.TryTake(OrderLockPath(order).c_str(), LockNote(holder)))
{
}

std::string OrderLock::Obstacle() const
{
    const std::string note = Printable(port::NoteOfLock(OrderLockPath(m_order).c_str()));
    return "the order file " + Quoted(support::Utf8FromNarrow(m_order)) +
           " is in use by another host" + (note.empty() ? std::string() : " (" + note + ")") +
           ", which judges or converts it. Wait until it is done; a verdict is in the history "
           "then.";
}

std::string OrderLock::Failure() const
{
    return "the lock " + Quoted(support::Utf8FromNarrow(OrderLockPath(m_order))) +
           " cannot be made, so that nothing keeps another host from judging the order at the same "
           "time. Give this user the right to write to the order's folder, and remove what else "
           "has "
           "that name.";
}

} // namespace host
