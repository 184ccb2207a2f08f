#pragma once

#include "host/batch/order.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>

namespace batch
{

/// Orders on their way to the threads that judge them.
class OrderQueue
{
public:
    void Push(Order order);
    /// No more come: who waits gets nothing once the queue is empty.
    void Close();
    /// Leaves out what waits, too.
    void Stop();

    /// Waits for the next order; nothing at the end.
    std::optional<Order> Next();
    std::size_t Waiting() const;

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Order> m_orders;
    bool m_isClosed = false;
};

} // namespace batch
