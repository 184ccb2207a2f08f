#include "host/batch/order_queue.h"

#include <utility>

namespace batch
{

void OrderQueue::Push(Order order)
{
    {
        const std::lock_guard guard(m_mutex);
        if (m_isClosed)
        {
            return;
        }
        m_orders.push_back(std::move(order));
    }
    m_changed.notify_one();
}

void OrderQueue::Close()
{
    {
        const std::lock_guard guard(m_mutex);
        m_isClosed = true;
    }
    m_changed.notify_all();
}

void OrderQueue::Stop()
{
    {
        const std::lock_guard guard(m_mutex);
        m_isClosed = true;
        m_orders.clear();
    }
    m_changed.notify_all();
}

std::optional<Order> OrderQueue::Next()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_isClosed || !m_orders.empty(); });
    if (m_orders.empty())
    {
        return std::nullopt;
    }
    Order order = std::move(m_orders.front());
    m_orders.pop_front();
    return order;
}

std::size_t OrderQueue::Waiting() const
{
    const std::lock_guard guard(m_mutex);
    return m_orders.size();
}

} // namespace batch
