#pragma once

namespace testing_support
{

/// Makes the calling thread's next allocation by operator new raise std::bad_alloc, once. What is
/// not used up is disarmed at the end of the scope.
class FailNextAllocation
{
public:
    FailNextAllocation();
    ~FailNextAllocation();
    FailNextAllocation(const FailNextAllocation&) = delete;
    FailNextAllocation& operator=(const FailNextAllocation&) = delete;

    /// Whether an allocation was refused.
    bool WasUsed() const;
};

} // namespace testing_support
