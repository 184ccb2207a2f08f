#include "port/com.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

namespace
{

std::uint32_t PrefixOf(BSTR text)
{
    std::uint32_t prefix = 0;
    std::memcpy(&prefix, reinterpret_cast<const char*>(text) - 4, 4);
    return prefix;
}

TEST(Bstr, HoldsTheTextBehindItsLengthInBytes)
{
    BSTR text = SysAllocString(L"QRV \u20AC");
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(std::wstring(text), L"QRV \u20AC");
    EXPECT_EQ(SysStringLen(text), 5U);
    EXPECT_EQ(SysStringByteLen(text), 5U * sizeof(OLECHAR));
    EXPECT_EQ(PrefixOf(text), 5U * sizeof(OLECHAR));
    EXPECT_EQ(text[5], L'\0');
    SysFreeString(text);
}

TEST(Bstr, NullStandsForAnEmptyText)
{
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysStringLen(nullptr), 0U);
    EXPECT_EQ(SysStringByteLen(nullptr), 0U);
    SysFreeString(nullptr);
}

TEST(Bstr, EmptyTextIsARealPointer)
{
    BSTR text = SysAllocString(L"");
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(SysStringLen(text), 0U);
    EXPECT_EQ(PrefixOf(text), 0U);
    EXPECT_EQ(text[0], L'\0');
    SysFreeString(text);
}

TEST(Bstr, EmbeddedNulsCount)
{
    BSTR text = SysAllocStringLen(L"a\0b", 3);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(SysStringLen(text), 3U);
    EXPECT_EQ(std::wstring(text, 4), std::wstring(L"a\0b\0", 4));
    SysFreeString(text);
}

TEST(Bstr, LengthOfACopyCutsTheText)
{
    BSTR text = SysAllocStringLen(L"longer", 4);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(std::wstring(text), L"long");
    SysFreeString(text);
}

TEST(Bstr, NullTextLeavesRoomWithATerminator)
{
    BSTR text = SysAllocStringLen(nullptr, 3);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(SysStringLen(text), 3U);
    EXPECT_EQ(text[3], L'\0');
    SysFreeString(text);
}

TEST(Bstr, LengthBeyondTheCountIsRefused)
{
    EXPECT_EQ(SysAllocStringLen(nullptr, 0xFFFFFFFFU), nullptr);
}

} // namespace
