#include "containers/text_array.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

TEST(TextArray, KeepsItsTextsWhenItGrows)
{
    TArray<TSimpleString> array(128);
    for (int index = 0; index < 129; ++index)
    {
        array.Add(TSimpleString(std::to_string(index).c_str()));
    }
    EXPECT_EQ(array.GetCapacity(), 256);
    for (int index = 0; index < 129; ++index)
    {
        ASSERT_STREQ(array.GetAt(index)->SafeGetString(), std::to_string(index).c_str());
    }
}

TEST(TextArray, HoldsCopiesOfItsOwn)
{
    TArray<TSimpleString> array(128);
    TSimpleString text("before");
    array.Add(text);
    text = "after";
    EXPECT_STREQ(array.GetAt(0)->SafeGetString(), "before");
}

TEST(TextArray, ElementNotYetUsedIsAnEmptyText)
{
    const TArray<TSimpleString> array(2);
    EXPECT_STREQ(array.GetData()[1].SafeGetString(), "");
}

} // namespace
