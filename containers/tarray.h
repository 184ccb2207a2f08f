#pragma once

#include "containers/tmutex.h"

#include <cstddef>
#include <new>
#include <type_traits>

/// Growable array with a lock of its own. Growth is linear: a full array gains `growBy` elements.
/// Element addresses change at every growth. GetAt and GetCount take no lock: a caller that
/// iterates while another thread adds holds a TMutexLocker on the array.
template <typename T>
class TArray : public TMutex
{
public:
    /// Allocates the first `growBy` elements at once.
    explicit TArray(int growBy);
    virtual ~TArray();

    /// Copies the element in; returns the new count. Raises std::bad_alloc, or what T's assignment
    /// raises, and is then as it was.
    int Add(const T& element);

    /// The element, or null past the end (or below 0).
    T* GetAt(int index) noexcept;
    const T* GetAt(int index) const noexcept;

    int GetCount() const noexcept { return m_count; }
    int GetCapacity() const noexcept { return m_capacity; }
    int GetGrowBy() const noexcept { return m_growBy; }
    /// The storage, null when nothing is allocated.
    const T* GetData() const noexcept { return m_data; }

    /// Makes room for `by` more elements.
    void Grow(int by);

    /// Destroys every element and frees the storage.
    void RemoveAll();

private:
    T* m_data = nullptr;
    int m_count = 0;
    int m_capacity = 0;
    int m_growBy;
};
