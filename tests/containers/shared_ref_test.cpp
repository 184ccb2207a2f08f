#include "containers/shared_ref_impl.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

namespace
{

struct Tracked
{
    explicit Tracked(int number, bool fails = false) : value(number)
    {
        if (fails)
        {
            throw std::runtime_error("expected");
        }
        ++alive;
    }
    Tracked(const Tracked&) = delete;
    Tracked& operator=(const Tracked&) = delete;
    ~Tracked() { --alive; }

    int value;
    SharedRef<Tracked> next;
    static inline int alive = 0;
};

TEST(SharedRef, StartsWithoutAnObject)
{
    const SharedRef<Tracked> reference;
    EXPECT_EQ(reference.Get(), nullptr);
    const SharedRef<Tracked> copy(reference);
    EXPECT_EQ(copy.Get(), nullptr);
}

TEST(SharedRef, CopiesShareOneObjectAndTheLastDestroysIt)
{
    SharedRef<Tracked> first;
    EXPECT_EQ(first.Emplace(7).value, 7);
    {
        const SharedRef<Tracked> second(first);
        SharedRef<Tracked> third;
        third = second;
        EXPECT_EQ(second.Get(), first.Get());
        EXPECT_EQ(third.Get(), first.Get());
        first.Reset();
        EXPECT_EQ(first.Get(), nullptr);
        EXPECT_EQ(Tracked::alive, 1);
        EXPECT_EQ(third.Get()->value, 7);
    }
    EXPECT_EQ(Tracked::alive, 0);
}

TEST(SharedRef, EmplaceLetsGoOfTheOldObjectAlone)
{
    SharedRef<Tracked> first;
    first.Emplace(1);
    const SharedRef<Tracked> second(first);
    first.Emplace(2);
    EXPECT_EQ(first.Get()->value, 2);
    EXPECT_EQ(second.Get()->value, 1);
    first.Emplace(3);
    EXPECT_EQ(Tracked::alive, 2);
}

TEST(SharedRef, ObjectThatCannotBeMadeKeepsTheOldOne)
{
    SharedRef<Tracked> reference;
    reference.Emplace(1);
    EXPECT_THROW(reference.Emplace(2, true), std::runtime_error);
    EXPECT_EQ(reference.Get()->value, 1);
    EXPECT_EQ(Tracked::alive, 1);
}

TEST(SharedRef, SelfAssignmentChangesNothing)
{
    SharedRef<Tracked> reference;
    reference.Emplace(1);
    const SharedRef<Tracked>& itself = reference;
    reference = itself;
    EXPECT_EQ(reference.Get()->value, 1);
    EXPECT_EQ(Tracked::alive, 1);
}

TEST(SharedRef, AssigningWhatTheOldObjectHoldsIsSafe)
{
    SharedRef<Tracked> reference;
    reference.Emplace(1);
    reference.Get()->next.Emplace(2);
    reference = reference.Get()->next;
    EXPECT_EQ(reference.Get()->value, 2);
    EXPECT_EQ(Tracked::alive, 1);
}

TEST(SharedRef, ThreadsMayCopyAndDropReferencesToOneObject)
{
    SharedRef<Tracked> reference;
    reference.Emplace(1);
    std::vector<std::thread> threads;
    for (int index = 0; index < 4; ++index)
    {
        threads.emplace_back(
            [own = reference]() mutable
            {
                for (int round = 0; round < 1000; ++round)
                {
                    const SharedRef<Tracked> copy(own);
                    EXPECT_EQ(copy.Get()->value, 1);
                }
                own.Reset();
            });
    }
    reference.Reset();
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    threads.clear();
    EXPECT_EQ(Tracked::alive, 0);
}

} // namespace
