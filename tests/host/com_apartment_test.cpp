#include "host/com_apartment.h"

#include "host/refusal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using host::ComApartment;
using testing::HasSubstr;

namespace
{

// CoInitialize answers S_OK on a thread without COM, and S_FALSE on one that has it.
bool ThreadHasCom()
{
    const HRESULT result = CoInitialize(nullptr);
    if (SUCCEEDED(result))
    {
        CoUninitialize();
    }
    return result != S_OK;
}

HRESULT OutOfMemory(void* /*reserved*/)
{
    return E_OUTOFMEMORY;
}

} // namespace

TEST(ComApartment, LastsUntilTheEndOfItsScope)
{
    ASSERT_FALSE(ThreadHasCom());
    {
        const ComApartment apartment;
        EXPECT_TRUE(ThreadHasCom());
    }
    EXPECT_FALSE(ThreadHasCom());
}

TEST(ComApartment, LeavesTheHoldOfAnotherUser)
{
    ASSERT_EQ(CoInitialize(nullptr), S_OK);
    {
        const ComApartment apartment;
    }
    EXPECT_TRUE(ThreadHasCom());
    CoUninitialize();
    EXPECT_FALSE(ThreadHasCom());
}

TEST(ComApartment, IsContentWithTheOtherKindAndLeavesIt)
{
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    {
        const ComApartment apartment;
    }
    EXPECT_TRUE(ThreadHasCom());
    CoUninitialize();
    EXPECT_FALSE(ThreadHasCom());
}

TEST(ComApartment, ThatCannotBeHadIsRefusedWithItsError)
{
    try
    {
        const ComApartment apartment(OutOfMemory);
        FAIL() << "not refused";
    }
    catch (const host::Refusal& refusal)
    {
        EXPECT_EQ(refusal.Status(), host::kCouldNotRun);
        EXPECT_THAT(refusal.what(), HasSubstr("0x8007000E"));
    }
    EXPECT_FALSE(ThreadHasCom());
}
