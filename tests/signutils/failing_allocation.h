#pragma once

namespace testing_support
{

/// Makes one allocation of the calling thread by operator new raise std::bad_alloc: the next, or
/// the one behind as many as are spared. What is not used up is disarmed at the end of the scope.
class FailNextAllocation
{
public:
    explicit FailNextAllocation(unsigned long spared = 0);
    ~FailNextAllocation();
    FailNextAllocation(const FailNextAllocation&) = delete;
    FailNextAllocation& operator=(const FailNextAllocation&) = delete;

    /// Whether an allocation was refused.
    bool WasUsed() const;
};

/// The same for that allocation and all behind it, as when memory has run out for good.
class FailAllAllocations
{
public:
    explicit FailAllAllocations(unsigned long spared = 0);
    ~FailAllAllocations();
    FailAllAllocations(const FailAllAllocations&) = delete;
    FailAllAllocations& operator=(const FailAllAllocations&) = delete;

    bool WasUsed() const;
};

} // namespace testing_support
