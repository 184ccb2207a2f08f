#include "tests/signutils/failing_allocation.h"

#include <cstdlib>
#include <new>

namespace
{

thread_local bool t_failNext = false;

void* Allocate(std::size_t size)
{
    if (t_failNext)
    {
        t_failNext = false;
        throw std::bad_alloc();
    }
    if (void* const memory = std::malloc(size == 0 ? 1 : size); memory != nullptr)
    {
        return memory;
    }
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size)
{
    return Allocate(size);
}

void* operator new[](std::size_t size)
{
    return Allocate(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace testing_support
{

FailNextAllocation::FailNextAllocation()
{
    t_failNext = true;
}

FailNextAllocation::~FailNextAllocation()
{
    t_failNext = false;
}

bool FailNextAllocation::WasUsed() const
{
    return !t_failNext;
}

} // namespace testing_support
