#pragma once

#include "port/kernel.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace port
{

/// Set instead of an owner when the last owner's thread ended without releasing.
inline constexpr std::uint32_t kAbandoned = 0x80000000U;

/// The generation of the handle and the owner's thread id in one word, so that one compare-and-swap
/// checks the handle and takes the mutex. Owner 0: free.
struct MutexState
{
    explicit constexpr MutexState(std::uint64_t value) : word(value) {}
    constexpr MutexState(std::uint32_t generation, std::uint32_t owner)
        : word((static_cast<std::uint64_t>(generation) << 32U) | owner)
    {
    }
    constexpr std::uint32_t Generation() const { return static_cast<std::uint32_t>(word >> 32U); }
    constexpr std::uint32_t Owner() const { return static_cast<std::uint32_t>(word); }

    std::uint64_t word;
};

/// What a handle is made of. It is a number to look up, never an address.
struct MutexHandle
{
    explicit MutexHandle(HANDLE handle)
        : generation(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(handle) >> 32U)),
          number(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(handle)))
    {
    }
    MutexHandle(std::uint32_t itsGeneration, std::uint32_t itsNumber)
        : generation(itsGeneration), number(itsNumber)
    {
    }
    HANDLE Value() const
    {
        const std::uint64_t value = (static_cast<std::uint64_t>(generation) << 32U) | number;
        // A number, as said. NOLINTNEXTLINE(performance-no-int-to-ptr)
        return reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(value));
    }

    std::uint32_t generation; ///< odd while the mutex lives
    std::uint32_t number;     ///< of the slot, from 1
};
static_assert(sizeof(std::uintptr_t) == 8, "a handle holds two 32-bit numbers");

/// A slot is never freed, only used again with the next generation: a stale handle is refused
/// without touching freed memory. A thread that goes on using a handle while another closes it may
/// still disturb `repeats` of the slot's next mutex; slots are reused in the order of closing so
/// that this takes more than a moment.
struct alignas(64) MutexSlot
{
    std::atomic<std::uint64_t> state{0};
    std::atomic<std::uint32_t> repeats{0}; ///< holds beyond the first, changed by the owner only
    std::atomic<std::uint32_t> waiters{0};
    std::mutex monitor;
    std::condition_variable released;
    MutexSlot* nextFree = nullptr;
    std::uint32_t number = 0;
};

/// A new mutex nobody owns, null when there is no memory.
HANDLE OpenMutexSlot() noexcept;
/// False when the handle is none or closed. Who waits on it then gets ERROR_INVALID_HANDLE.
bool CloseMutexSlot(const MutexHandle& handle);

inline constexpr std::uint32_t kFirstBlock = 64;
inline constexpr std::uint32_t kBlocks = 24; ///< each as large as all before it: 2^30 slots

/// The blocks of slots; a pointer is set once and stays.
extern std::atomic<MutexSlot*> g_mutexBlocks[kBlocks];

/// The slot of a number, null when there never was one. The generation is not checked.
inline MutexSlot* FindMutexSlot(const MutexHandle& handle)
{
    const std::uint64_t place = static_cast<std::uint64_t>(handle.number) - 1 + kFirstBlock;
    if (handle.number == 0 || place >> (kBlocks + 6U) != 0)
    {
        return nullptr;
    }
    const auto block = static_cast<std::uint32_t>(63 - __builtin_clzll(place)) - 6U;
    MutexSlot* const slots = g_mutexBlocks[block].load(std::memory_order_acquire);
    return slots == nullptr ? nullptr : slots + (place - (std::uint64_t{kFirstBlock} << block));
}

template <typename Action>
void ForEachMutexSlot(const Action& action)
{
    for (std::uint32_t block = 0; block < kBlocks; ++block)
    {
        MutexSlot* const slots = g_mutexBlocks[block].load(std::memory_order_acquire);
        if (slots == nullptr)
        {
            return;
        }
        for (std::uint32_t index = 0; index < kFirstBlock << block; ++index)
        {
            action(slots[index]);
        }
    }
}

/// Marks every mutex that the thread owns as abandoned.
void AbandonMutexesOf(std::uint32_t thread);

} // namespace port
