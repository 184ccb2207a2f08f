#include "port/posix/mutex_slots.h"

#include <memory>
#include <new>

namespace port
{

std::atomic<MutexSlot*> g_mutexBlocks[kBlocks];

namespace
{

// Constant-initialised and never destroyed: mutexes are made and closed by static objects too.
std::mutex g_freeLock;
MutexSlot* g_freeFirst = nullptr;
MutexSlot* g_freeLast = nullptr;

void AppendFree(MutexSlot& slot)
{
    slot.nextFree = nullptr;
    (g_freeLast == nullptr ? g_freeFirst : g_freeLast->nextFree) = &slot;
    g_freeLast = &slot;
}

/// Adds the next block. Its slots are numbered in the order of the blocks.
bool AddBlock()
{
    std::uint32_t block = 0;
    while (block < kBlocks && g_mutexBlocks[block].load(std::memory_order_relaxed) != nullptr)
    {
        ++block;
    }
    if (block == kBlocks)
    {
        return false;
    }
    const std::uint32_t size = kFirstBlock << block;
    // Without the length that an array would keep before its first element: leak checkers follow
    // pointers to the start of a block.
    void* const memory = ::operator new(size * sizeof(MutexSlot),
                                        std::align_val_t(alignof(MutexSlot)), std::nothrow);
    if (memory == nullptr)
    {
        return false;
    }
    auto* const slots = static_cast<MutexSlot*>(memory);
    std::uninitialized_default_construct_n(slots, size);
    for (std::uint32_t index = 0; index < size; ++index)
    {
        slots[index].number = size - kFirstBlock + index + 1;
        AppendFree(slots[index]);
    }
    g_mutexBlocks[block].store(slots, std::memory_order_release);
    return true;
}

} // namespace

HANDLE OpenMutexSlot() noexcept
{
    const std::lock_guard<std::mutex> lock(g_freeLock);
    if (g_freeFirst == nullptr && !AddBlock())
    {
        return nullptr;
    }
    MutexSlot& slot = *g_freeFirst;
    g_freeFirst = slot.nextFree;
    if (g_freeFirst == nullptr)
    {
        g_freeLast = nullptr;
    }
    const std::uint32_t generation = MutexState(slot.state.load()).Generation() + 1;
    slot.repeats.store(0, std::memory_order_relaxed);
    slot.state.store(MutexState(generation, 0).word);
    return MutexHandle(generation, slot.number).Value();
}

bool CloseMutexSlot(const MutexHandle& handle)
{
    MutexSlot* const slot = FindMutexSlot(handle);
    // An even generation is that of a free slot, never of a handle given out.
    if (slot == nullptr || handle.generation % 2 == 0)
    {
        return false;
    }
    {
        const std::lock_guard<std::mutex> monitor(slot->monitor);
        std::uint64_t seen = slot->state.load();
        do
        {
            if (MutexState(seen).Generation() != handle.generation)
            {
                return false;
            }
        } while (
            !slot->state.compare_exchange_weak(seen, MutexState(handle.generation + 1, 0).word));
        slot->released.notify_all();
    }
    const std::lock_guard<std::mutex> lock(g_freeLock);
    AppendFree(*slot);
    return true;
}

} // namespace port
