#include "containers/tarray.h"
#include "tests/containers/lock_probe.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>

namespace
{

using testing_support::IsFreeForOthers;

/// An element whose allocation, construction or assignment fails when told to.
struct Failing
{
    Failing() { CountDown(constructionsLeft); }
    explicit Failing(int number) : value(number) {}
    Failing(const Failing&) = default;
    Failing& operator=(const Failing& other)
    {
        CountDown(assignmentsLeft);
        value = other.value;
        return *this;
    }
    ~Failing() = default;

    static void* operator new[](std::size_t size)
    {
        if (noMemory)
        {
            throw std::bad_alloc();
        }
        return ::operator new[](size);
    }
    static void operator delete[](void* storage) { ::operator delete[](storage); }

    static void CountDown(int& left)
    {
        if (left == 0)
        {
            throw std::runtime_error("expected");
        }
        --left;
    }
    static void Reset()
    {
        noMemory = false;
        constructionsLeft = -1;
        assignmentsLeft = -1;
    }

    int value = 0;
    static inline bool noMemory = false;
    static inline int constructionsLeft = -1; ///< -1: never fails
    static inline int assignmentsLeft = -1;
};

class TArrayFailures : public testing::Test
{
protected:
    TArrayFailures()
    {
        m_array.Add(Failing(10));
        m_array.Add(Failing(20));
        m_data = m_array.GetData();
    }
    ~TArrayFailures() override { Failing::Reset(); }

    void ExpectAsItWas()
    {
        Failing::Reset();
        EXPECT_EQ(m_array.GetCount(), 2);
        EXPECT_EQ(m_array.GetCapacity(), 2);
        EXPECT_EQ(m_array.GetData(), m_data);
        EXPECT_EQ(m_array.GetAt(0)->value, 10);
        EXPECT_EQ(m_array.GetAt(1)->value, 20);
        EXPECT_EQ(m_array.GetAt(2), nullptr);
        EXPECT_TRUE(IsFreeForOthers(m_array));
        EXPECT_EQ(m_array.Add(Failing(30)), 3);
        EXPECT_EQ(m_array.GetAt(2)->value, 30);
    }

    TArray<Failing> m_array{2};
    const Failing* m_data = nullptr;
};

TEST_F(TArrayFailures, FailedAllocationInAddKeepsTheArrayAndReleasesTheLock)
{
    Failing::noMemory = true;
    EXPECT_THROW(m_array.Add(Failing(30)), std::bad_alloc);
    ExpectAsItWas();
}

TEST_F(TArrayFailures, FailedAllocationInGrowKeepsTheArrayAndReleasesTheLock)
{
    Failing::noMemory = true;
    EXPECT_THROW(m_array.Grow(5), std::bad_alloc);
    ExpectAsItWas();
}

TEST_F(TArrayFailures, CapacityBeyondAnIntIsRefused)
{
    EXPECT_THROW(m_array.Grow(INT_MAX), std::bad_alloc);
    EXPECT_THROW(m_array.Grow(INT_MAX - 1), std::bad_alloc);
    ExpectAsItWas();
}

TEST_F(TArrayFailures, ElementThatCannotBeConstructedKeepsTheArray)
{
    Failing::constructionsLeft = 3;
    EXPECT_THROW(m_array.Grow(2), std::runtime_error);
    ExpectAsItWas();
}

TEST_F(TArrayFailures, NewElementThatCannotBeCopiedKeepsTheFullArray)
{
    const Failing element(30);
    Failing::assignmentsLeft = 0;
    EXPECT_THROW(m_array.Add(element), std::runtime_error);
    ExpectAsItWas();
}

TEST_F(TArrayFailures, ElementThatCannotBeFilledIsNotCountedAndReleasesTheLock)
{
    EXPECT_THROW(m_array.AddFilled([](Failing&) { throw std::runtime_error("expected"); }),
                 std::runtime_error);
    EXPECT_EQ(m_array.GetCount(), 2);
    EXPECT_EQ(m_array.GetAt(2), nullptr);
    EXPECT_TRUE(IsFreeForOthers(m_array));
    m_array.AddFilled([](Failing& element) { element.value = 30; });
    EXPECT_EQ(m_array.GetAt(0)->value, 10);
    EXPECT_EQ(m_array.GetAt(1)->value, 20);
    EXPECT_EQ(m_array.GetAt(2)->value, 30);
}

TEST_F(TArrayFailures, NoMemoryForAFilledElementKeepsTheArray)
{
    Failing::noMemory = true;
    EXPECT_THROW(m_array.AddFilled([](Failing& element) { element.value = 30; }), std::bad_alloc);
    ExpectAsItWas();
}

TEST_F(TArrayFailures, OldElementThatCannotBeCopiedKeepsTheFullArray)
{
    const Failing element(30);
    for (const int assignments : {1, 2})
    {
        Failing::assignmentsLeft = assignments;
        EXPECT_THROW(m_array.Add(element), std::runtime_error);
    }
    Failing::assignmentsLeft = 1;
    EXPECT_THROW(m_array.Grow(1), std::runtime_error);
    ExpectAsItWas();
}

TEST_F(TArrayFailures, NewElementThatCannotBeCopiedKeepsAnArrayWithRoom)
{
    m_array.Grow(1);
    const Failing element(30);
    Failing::assignmentsLeft = 0;
    EXPECT_THROW(m_array.Add(element), std::runtime_error);
    EXPECT_EQ(m_array.GetCount(), 2);
    EXPECT_EQ(m_array.GetCapacity(), 3);
    EXPECT_TRUE(IsFreeForOthers(m_array));
}

TEST(TArrayConstruction, FailsAsAWholeWithoutMemory)
{
    Failing::noMemory = true;
    EXPECT_THROW(TArray<Failing>(128), std::bad_alloc);
    Failing::Reset();
}

} // namespace
