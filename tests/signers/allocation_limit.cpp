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

void* operator new(std::size_t size)
{
    void* const memory = size < allocationLimit ? std::malloc(size == 0 ? 1 : size) : nullptr;
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
