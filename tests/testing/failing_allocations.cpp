#include "tests/testing/failing_allocations.h"

#include <cstdlib>
#include <new>

namespace
{

struct Fault
{
    bool armed = false;
    bool once = false;
    std::size_t fromSize = 0;
    unsigned long spared = 0;
    bool used = false;
};

thread_local Fault t_fault;

bool MustFail(std::size_t size) noexcept
{
    if (!t_fault.armed || size < t_fault.fromSize)
    {
        return false;
    }
    if (t_fault.spared > 0)
    {
        --t_fault.spared;
        return false;
    }
    t_fault.used = true;
    t_fault.armed = !t_fault.once;
    return true;
}

} // namespace

namespace testing_support
{

AllocationFault::AllocationFault(Times times, std::size_t fromSize, unsigned long spared) noexcept
{
    t_fault = {true, times == Times::Once, fromSize, spared, false};
}

AllocationFault::~AllocationFault()
{
    t_fault.armed = false;
}

bool AllocationFault::WasUsed() const noexcept
{
    return t_fault.used;
}

} // namespace testing_support

// The whole family is replaced, so that every allocation meets the delete that belongs to it.

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return MustFail(size) ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return operator new(size, std::nothrow);
}

void* operator new(std::size_t size)
{
    void* const memory = operator new(size, std::nothrow);
    if (memory == nullptr)
    {
        throw std::bad_alloc();
    }
    return memory;
}

void* operator new[](std::size_t size)
{
    return operator new(size);
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

void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}
