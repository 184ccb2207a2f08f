#pragma once

#include <cstddef>

namespace testing_support
{

// Faults of operator new on the calling thread: the honest way to std::bad_alloc. One at a time;
// what is not used up ends with its scope. A test program links signutils_failing_allocations.

/// What the faults have in common.
class AllocationFault
{
public:
    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;

    /// Whether an allocation was refused.
    bool WasUsed() const noexcept;

protected:
    enum class Times
    {
        Once,
        Always,
    };

    /// Allocations of fewer than `fromSize` bytes pass, and `spared` of the others.
    AllocationFault(Times times, std::size_t fromSize, unsigned long spared) noexcept;
    ~AllocationFault();
};

/// One allocation fails: the next, or the one behind as many as are spared.
class FailNextAllocation : public AllocationFault
{
public:
    explicit FailNextAllocation(unsigned long spared = 0) noexcept
        : AllocationFault(Times::Once, 0, spared)
    {
    }
};

/// That allocation and all behind it fail, as when memory has run out for good.
class FailAllAllocations : public AllocationFault
{
public:
    explicit FailAllAllocations(unsigned long spared = 0) noexcept
        : AllocationFault(Times::Always, 0, spared)
    {
    }
};

/// The first allocation of at least `size` bytes fails: a message about it can still be written.
class FailLargeAllocation : public AllocationFault
{
public:
    explicit FailLargeAllocation(std::size_t size) noexcept : AllocationFault(Times::Once, size, 0)
    {
    }
};

/// No allocation gets `limit` bytes or more.
class AllocationLimit : public AllocationFault
{
public:
    explicit AllocationLimit(std::size_t limit) noexcept : AllocationFault(Times::Always, limit, 0)
    {
    }
};

} // namespace testing_support
