#include "tests/signutils/failing_allocation.h"

#include <cstdlib>
#include <new>

namespace
{

enum class Failing
{
    None,
    Once,
    Always,
};

thread_local Failing t_failing = Failing::None;
thread_local unsigned long t_spared = 0;
thread_local bool t_used = false;

void Arm(Failing failing, unsigned long spared)
{
    t_failing = failing;
    t_spared = spared;
    t_used = false;
}

bool MustFail()
{
    if (t_failing == Failing::None || t_spared-- > 0)
    {
        return false;
    }
    t_spared = 0;
    t_used = true;
    if (t_failing == Failing::Once)
    {
        t_failing = Failing::None;
    }
    return true;
}

void* Allocate(std::size_t size)
{
    if (MustFail())
    {
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

FailNextAllocation::FailNextAllocation(unsigned long spared)
{
    Arm(Failing::Once, spared);
}

FailNextAllocation::~FailNextAllocation()
{
    t_failing = Failing::None;
}

bool FailNextAllocation::WasUsed() const
{
    return t_used;
}

FailAllAllocations::FailAllAllocations(unsigned long spared)
{
    Arm(Failing::Always, spared);
}

FailAllAllocations::~FailAllAllocations()
{
    t_failing = Failing::None;
}

bool FailAllAllocations::WasUsed() const
{
    return t_used;
}

} // namespace testing_support
