#include "containers/tarray.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

// Storage of plain records must not be written before it is used.

namespace
{

struct LargeRecord
{
    char text[512 * 1024];
};

constexpr std::size_t kStorage = 128 * sizeof(LargeRecord);
/// Room for the allocator's own bytes and for pages that the system maps in larger units.
constexpr std::size_t kSlack = 4U * 1024 * 1024;

/// Bytes of the whole pages within the range that are in memory.
std::size_t ResidentBytes(const void* start, std::size_t size)
{
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto address = reinterpret_cast<std::uintptr_t>(start);
    const std::uintptr_t first = (address + page - 1) / page * page;
    const std::uintptr_t last = (address + size) / page * page;
    std::vector<unsigned char> pages((last - first) / page);
    EXPECT_EQ(mincore(reinterpret_cast<void*>(first), last - first, pages.data()), 0);
    std::size_t resident = 0;
    for (const unsigned char present : pages)
    {
        resident += (present & 1U) != 0 ? page : 0;
    }
    return resident;
}

TEST(PosixUntouchedStorage, NewArrayOf128LargeRecordsTakesNoMemory)
{
    const TArray<LargeRecord> array(128);
    EXPECT_LT(ResidentBytes(array.GetData(), kStorage), kSlack);
}

TEST(PosixUntouchedStorage, OnlyRecordsInUseTakeMemory)
{
    TArray<LargeRecord> array(128);
    const auto record = std::make_unique<LargeRecord>();
    array.Add(*record);
    const std::size_t resident = ResidentBytes(array.GetData(), kStorage);
    EXPECT_GE(resident, sizeof(LargeRecord) - 8192) << "the probe sees pages in use";
    EXPECT_LT(resident, sizeof(LargeRecord) + kSlack);
}

TEST(PosixUntouchedStorage, GrowthDoesNotTouchTheNewRoom)
{
    TArray<LargeRecord> array(128);
    const auto record = std::make_unique<LargeRecord>();
    array.Add(*record);
    array.Grow(128);
    EXPECT_LT(ResidentBytes(array.GetData(), 2 * kStorage), sizeof(LargeRecord) + kSlack);
}

} // namespace
