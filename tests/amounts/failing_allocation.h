#pragma once

#include <cstddef>

namespace amounts_tests
{

/// While it lives, the first allocation of this thread of at least `size` bytes fails, once: a
/// message about it can still be written.
class FailingAllocation
{
public:
    explicit FailingAllocation(std::size_t size) noexcept;
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// Whether an allocation did fail.
    bool Happened() const noexcept;
};

} // namespace amounts_tests
