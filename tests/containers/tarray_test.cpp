#include "containers/tarray.h"
#include "tests/containers/lock_probe.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <vector>

namespace
{

using testing_support::IsFreeForOthers;

struct Identifier
{
    std::uint32_t first;
    std::array<unsigned char, 12> rest;
};

/// Counts the objects alive.
struct Counted
{
    Counted() { ++alive; }
    Counted(const Counted& other) : value(other.value) { ++alive; }
    Counted& operator=(const Counted& other) = default;
    ~Counted() { --alive; }

    int value = 0;
    static inline int alive = 0;
};

TEST(TArray, StartsEmptyWithItsFirstElementsAllocated)
{
    const TArray<int> array(128);
    EXPECT_EQ(array.GetCount(), 0);
    EXPECT_EQ(array.GetCapacity(), 128);
    EXPECT_EQ(array.GetGrowBy(), 128);
    EXPECT_NE(array.GetData(), nullptr);
    EXPECT_NE(array.GetHandle(), nullptr);
}

TEST(TArray, AddReturnsTheNewCount)
{
    TArray<int> array(128);
    EXPECT_EQ(array.Add(7), 1);
    EXPECT_EQ(array.Add(8), 2);
    EXPECT_EQ(*array.GetAt(0), 7);
    EXPECT_EQ(*array.GetAt(1), 8);
}

TEST(TArray, ElementIsFilledInItsPlaceUnderTheLock)
{
    TArray<int> array(1);
    bool free = true;
    const auto fillWith = [&](int value)
    {
        return [&array, &free, value](int& element)
        {
            element = value;
            free = IsFreeForOthers(array);
        };
    };
    EXPECT_EQ(array.AddFilled(fillWith(7)), 1);
    EXPECT_FALSE(free);
    EXPECT_EQ(array.AddFilled(fillWith(8)), 2);
    EXPECT_EQ(array.GetCapacity(), 2);
    EXPECT_EQ(*array.GetAt(0), 7);
    EXPECT_EQ(*array.GetAt(1), 8);
    EXPECT_TRUE(IsFreeForOthers(array));
}

TEST(TArray, The129thElementGrowsItTo256AndKeepsTheFirst128)
{
    TArray<int> array(128);
    for (int value = 0; value < 128; ++value)
    {
        array.Add(value * 3);
    }
    EXPECT_EQ(array.GetCapacity(), 128);
    EXPECT_EQ(array.Add(-1), 129);
    EXPECT_EQ(array.GetCapacity(), 256);
    for (int index = 0; index < 128; ++index)
    {
        ASSERT_EQ(*array.GetAt(index), index * 3);
    }
    EXPECT_EQ(*array.GetAt(128), -1);
}

TEST(TArray, GrowthIsLinear)
{
    TArray<int> array(128);
    for (int value = 0; value < 300; ++value)
    {
        array.Add(value);
    }
    EXPECT_EQ(array.GetCapacity(), 384);
}

TEST(TArray, GetAtPastTheEndOrBelowZeroIsNull)
{
    TArray<int> array(128);
    array.Add(1);
    array.Add(2);
    const TArray<int>& constant = array;
    EXPECT_EQ(array.GetAt(array.GetCount()), nullptr);
    EXPECT_EQ(*array.GetAt(array.GetCount() - 1), 2);
    EXPECT_EQ(array.GetAt(-1), nullptr);
    EXPECT_EQ(array.GetAt(INT_MAX), nullptr);
    EXPECT_EQ(array.GetAt(INT_MIN), nullptr);
    EXPECT_EQ(constant.GetAt(constant.GetCount()), nullptr);
    EXPECT_EQ(*constant.GetAt(constant.GetCount() - 1), 2);
    EXPECT_EQ(constant.GetAt(-1), nullptr);
}

TEST(TArray, RemoveAllLeavesNothingAllocated)
{
    TArray<int> array(128);
    array.Add(1);
    array.RemoveAll();
    EXPECT_EQ(array.GetCount(), 0);
    EXPECT_EQ(array.GetCapacity(), 0);
    EXPECT_EQ(array.GetData(), nullptr);
    EXPECT_EQ(array.GetAt(0), nullptr);
    array.RemoveAll();
    EXPECT_EQ(array.GetData(), nullptr);
}

TEST(TArray, AddAfterRemoveAllGrowsItFirst)
{
    TArray<int> array(128);
    array.RemoveAll();
    EXPECT_EQ(array.Add(5), 1);
    EXPECT_EQ(array.GetCapacity(), 128);
    EXPECT_EQ(*array.GetAt(0), 5);
}

TEST(TArray, GrowMakesRoomAndKeepsTheElements)
{
    TArray<int> array(2);
    array.Add(1);
    array.Grow(10);
    EXPECT_EQ(array.GetCapacity(), 12);
    EXPECT_EQ(array.GetCount(), 1);
    EXPECT_EQ(*array.GetAt(0), 1);
}

TEST(TArray, GrowByNothingOrLessDoesNothing)
{
    TArray<int> array(2);
    array.Add(1);
    const int* const data = array.GetData();
    array.Grow(0);
    array.Grow(-1);
    array.Grow(INT_MIN);
    EXPECT_EQ(array.GetCapacity(), 2);
    EXPECT_EQ(array.GetData(), data);
}

TEST(TArray, ArrayThatWouldNotGrowGrowsByOne)
{
    for (const int growBy : {0, -5})
    {
        TArray<int> array(growBy);
        EXPECT_EQ(array.GetCapacity(), 0);
        EXPECT_EQ(array.GetGrowBy(), growBy);
        EXPECT_EQ(array.Add(1), 1);
        EXPECT_EQ(array.Add(2), 2);
        EXPECT_EQ(array.GetCapacity(), 2);
        EXPECT_EQ(*array.GetAt(1), 2);
    }
}

TEST(TArray, ElementOfTheArrayItselfCanBeAddedWhileItGrows)
{
    TArray<std::vector<int>> array(1);
    array.Add({1, 2, 3});
    array.Add(*array.GetAt(0));
    EXPECT_EQ(*array.GetAt(0), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(*array.GetAt(1), (std::vector<int>{1, 2, 3}));
}

TEST(TArray, PlainRecordsAreCopiedByValue)
{
    TArray<Identifier> array(128);
    Identifier identifier{0x01020304, {9, 8, 7, 6, 5, 4, 3, 2, 1, 0, 255, 254}};
    array.Add(identifier);
    identifier.first = 0;
    EXPECT_EQ(array.GetAt(0)->first, 0x01020304U);
    EXPECT_EQ(array.GetAt(0)->rest[10], 255);
}

TEST(TArray, PointedToItemsOutliveAnArrayOfPointers)
{
    const auto item = std::make_unique<Counted>();
    item->value = 42;
    {
        TArray<Counted*> array(128);
        array.Add(item.get());
        EXPECT_EQ(*array.GetAt(0), item.get());
    }
    EXPECT_EQ(Counted::alive, 1);
    EXPECT_EQ(item->value, 42);
}

TEST(TArray, AllElementsOfTheStorageAreConstructedAndDestroyed)
{
    {
        TArray<Counted> array(3);
        EXPECT_EQ(Counted::alive, 3);
        for (int index = 0; index < 4; ++index)
        {
            array.Add(Counted());
        }
        EXPECT_EQ(Counted::alive, 6);
        array.RemoveAll();
        EXPECT_EQ(Counted::alive, 0);
        array.Add(Counted());
    }
    EXPECT_EQ(Counted::alive, 0);
}

TEST(TArray, DestructionClosesTheMutex)
{
    void* handle = nullptr;
    {
        const TArray<int> array(1);
        handle = array.GetHandle();
    }
    EXPECT_EQ(CloseHandle(handle), 0);
}

TEST(TArray, EveryChangeLeavesTheMutexFree)
{
    TArray<int> array(1);
    array.Add(1);
    array.Add(2);
    array.Grow(3);
    array.RemoveAll();
    EXPECT_TRUE(IsFreeForOthers(array));
}

TEST(TArray, ThreadsMayAddAtTheSameTime)
{
    TArray<int> array(16);
    std::vector<std::thread> threads;
    for (int index = 0; index < 4; ++index)
    {
        threads.emplace_back(
            [&array]
            {
                for (int round = 0; round < 500; ++round)
                {
                    array.Add(1);
                }
            });
    }
    // Iterating needs a lock of one's own.
    {
        const TMutexLocker locker(array);
        const int before = array.GetCount();
        int sum = 0;
        for (int index = 0; index < before; ++index)
        {
            sum += *array.GetAt(index);
        }
        EXPECT_EQ(sum, before);
        EXPECT_EQ(array.GetCount(), before);
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(array.GetCount(), 2000);
}

} // namespace
