#pragma once

/// A counted reference to one object: copies share it, the last one destroys it. The count is safe
/// between threads, the reference itself belongs to one thread. Where members are called,
/// containers/shared_ref_impl.h is included too; a class that only holds one needs no more than
/// this header.
template <typename T>
class SharedRef
{
public:
    SharedRef() noexcept = default;
    SharedRef(const SharedRef& other) noexcept; ///< shares the object
    /// Assigning a reference to itself changes nothing: it goes by way of a copy.
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment,cert-oop54-cpp)
    SharedRef& operator=(const SharedRef& other) noexcept;
    ~SharedRef();

    /// The object, null when there is none.
    T* Get() const noexcept;
    /// Makes a new object from the arguments and lets go of the old one.
    template <typename... Arguments>
    T& Emplace(Arguments&&... arguments);
    void Reset() noexcept; ///< lets go of the object

private:
    struct Node;
    Node* m_node = nullptr;
};
