#include "tests/amounts/failing_allocation.h"

#include <cstdint>
#include <cstdlib>
#include <new>

namespace
{

thread_local std::size_t failingSize = SIZE_MAX;

} // namespace

namespace amounts_tests
{

FailingAllocation::FailingAllocation(std::size_t size) noexcept
{
    failingSize = size;
}

FailingAllocation::~FailingAllocation()
{
    failingSize = SIZE_MAX;
}

bool FailingAllocation::Happened() const noexcept
{
    return failingSize == SIZE_MAX;
}

} // namespace amounts_tests

// The whole family is replaced, so that every allocation meets the delete that belongs to it.

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    if (size >= failingSize)
    {
        failingSize = SIZE_MAX;
        return nullptr;
    }
    return std::malloc(size == 0 ? 1 : size);
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
