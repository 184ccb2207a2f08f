#pragma once

#include <cstddef>

namespace testing_support
{

/// While it lives, no allocation of this thread gets `limit` bytes or more: the honest way to an
/// exception that is none of the database's.
class AllocationLimit
{
public:
    explicit AllocationLimit(std::size_t limit) noexcept;
    ~AllocationLimit();
    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;
};

} // namespace testing_support
