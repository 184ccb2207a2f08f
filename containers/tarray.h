#pragma once

#include "containers/tmutex.h"

#include <climits>
#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

/// Growable array with a lock of its own. Growth is linear: a full array gains `growBy` elements.
/// Element addresses change at every growth. GetAt and GetCount take no lock: a caller that
/// iterates while another thread adds holds a TMutexLocker on the array.
///
/// All elements of the storage are default-constructed. Those of plain records are not even
/// touched: 128 large ones cost no memory before they are used.
template <typename T>
class TArray : public TMutex
{
public:
    /// Allocates the first `growBy` elements at once.
    explicit TArray(int growBy);
    virtual ~TArray();

    /// Copies the element in, which may be one of this array; returns the new count. Raises
    /// std::bad_alloc, or what T's constructor or assignment raises, and is then as it was. An
    /// array whose `growBy` is 0 or less grows by one.
    int Add(const T& element);

    /// The same with an element that `fill`, given its place in the storage, makes there in
    /// whatever state it finds it, for elements that are dear to copy. What `fill` raises leaves
    /// the array with its elements; `fill` does not touch the array.
    template <typename Fill>
    int AddFilled(Fill&& fill);

    /// The element, or null past the end (or below 0).
    T* GetAt(int index) noexcept;
    const T* GetAt(int index) const noexcept; ///< the same, not to be changed

    int GetCount() const noexcept { return m_count; }       ///< elements
    int GetCapacity() const noexcept { return m_capacity; } ///< elements that fit
    int GetGrowBy() const noexcept { return m_growBy; }     ///< step of growth
    /// The storage, null when nothing is allocated.
    const T* GetData() const noexcept { return m_data; }

    /// Makes room for `by` more elements; nothing happens for 0 or less. Raises std::bad_alloc when
    /// there is no memory for them or the capacity would not fit an int, and is then as it was.
    void Grow(int by);

    /// Destroys every element and frees the storage.
    void RemoveAll();

private:
    T* NewStorage(int by) const;
    void MoveInto(T* storage, int by);

    T* m_data = nullptr;
    int m_count = 0;
    int m_capacity = 0;
    int m_growBy;
};

template <typename T>
TArray<T>::TArray(int growBy) : m_growBy(growBy)
{
    Grow(growBy);
}

template <typename T>
TArray<T>::~TArray()
{
    RemoveAll();
}

template <typename T>
int TArray<T>::Add(const T& element)
{
    const TMutexLocker locker(*this);
    if (m_count < m_capacity)
    {
        m_data[m_count] = element;
        return ++m_count;
    }
    const int by = m_growBy > 0 ? m_growBy : 1;
    std::unique_ptr<T[]> storage(NewStorage(by));
    // Before the old elements move: the new one may be one of them, and its copy may fail.
    storage[static_cast<std::size_t>(m_count)] = element;
    MoveInto(storage.get(), by);
    storage.release();
    return ++m_count;
}

template <typename T>
template <typename Fill>
int TArray<T>::AddFilled(Fill&& fill)
{
    const TMutexLocker locker(*this);
    if (m_count == m_capacity)
    {
        Grow(m_growBy > 0 ? m_growBy : 1);
    }
    fill(m_data[m_count]);
    return ++m_count;
}

template <typename T>
T* TArray<T>::GetAt(int index) noexcept
{
    return index >= 0 && index < m_count ? m_data + index : nullptr;
}

template <typename T>
const T* TArray<T>::GetAt(int index) const noexcept
{
    return index >= 0 && index < m_count ? m_data + index : nullptr;
}

template <typename T>
void TArray<T>::Grow(int by)
{
    const TMutexLocker locker(*this);
    if (by > 0)
    {
        std::unique_ptr<T[]> storage(NewStorage(by));
        MoveInto(storage.get(), by);
        storage.release();
    }
}

template <typename T>
void TArray<T>::RemoveAll()
{
    const TMutexLocker locker(*this);
    m_count = 0;
    m_capacity = 0;
    delete[] std::exchange(m_data, nullptr);
}

template <typename T>
T* TArray<T>::NewStorage(int by) const
{
    if (by > INT_MAX - m_capacity)
    {
        throw std::bad_alloc();
    }
    // Not value-initialised: that would write every byte of plain records.
    return new T[static_cast<std::size_t>(m_capacity) + static_cast<std::size_t>(by)];
}

/// Carries the elements in use over, and then makes the storage the array's own. Elements are moved
/// only where that cannot fail half-way.
template <typename T>
void TArray<T>::MoveInto(T* storage, int by)
{
    for (int index = 0; index < m_count; ++index)
    {
        if constexpr (std::is_nothrow_move_assignable_v<T>)
        {
            storage[index] = std::move(m_data[index]);
        }
        else
        {
            storage[index] = m_data[index];
        }
    }
    delete[] std::exchange(m_data, storage);
    m_capacity += by;
}
