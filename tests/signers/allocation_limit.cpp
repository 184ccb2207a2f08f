#include "tests/signers/allocation_limit.h"

#include <cstdint>
#include <cstdlib>
#include <new>

namespace
{

thread_local std::size_t allocationLimit = SIZE_MAX;

} // namespace

namespace testing_support
{

AllocationLimit::AllocationLimit(std::size_t limit) noexcept
{
    allocationLimit = limit;
}

AllocationLimit::~AllocationLimit()
{
    allocationLimit = SIZE_MAX;
}

} // namespace testing_support

// The whole family is replaced, so that every allocation meets the delete that belongs to it.

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return size < allocationLimit ? std::malloc(size == 0 ? 1 : size) : nullptr;
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
