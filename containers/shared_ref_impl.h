#pragma once

#include "containers/shared_ref.h"

#include <atomic>
#include <utility>

template <typename T>
struct SharedRef<T>::Node
{
    template <typename... Arguments>
    explicit Node(Arguments&&... arguments) : object(std::forward<Arguments>(arguments)...)
    {
    }

    std::atomic<unsigned int> references{1};
    T object;
};

template <typename T>
SharedRef<T>::SharedRef(const SharedRef& other) noexcept : m_node(other.m_node)
{
    if (m_node != nullptr)
    {
        m_node->references.fetch_add(1, std::memory_order_relaxed);
    }
}

template <typename T>
SharedRef<T>& SharedRef<T>::operator=(const SharedRef& other) noexcept
{
    // By way of a copy: the object assigned may be reached through the one that is let go.
    SharedRef copy(other);
    std::swap(m_node, copy.m_node);
    return *this;
}

template <typename T>
SharedRef<T>::~SharedRef()
{
    Reset();
}

template <typename T>
T* SharedRef<T>::Get() const noexcept
{
    // The analyser does not count references: every one that is let go is the last to it.
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete)
    return m_node == nullptr ? nullptr : &m_node->object;
}

template <typename T>
template <typename... Arguments>
T& SharedRef<T>::Emplace(Arguments&&... arguments)
{
    // The new object first: when it cannot be made, the old one stays.
    Node* const made = new Node(std::forward<Arguments>(arguments)...);
    Reset();
    m_node = made;
    return made->object;
}

template <typename T>
void SharedRef<T>::Reset() noexcept
{
    Node* const node = std::exchange(m_node, nullptr);
    if (node != nullptr && node->references.fetch_sub(1, std::memory_order_acq_rel) == 1)
    {
        delete node;
    }
}
