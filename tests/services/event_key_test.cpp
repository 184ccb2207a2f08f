#include "services/event_key.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace
{

TEST(EventKey, HasTheFormOfARandomUuid)
{
    for (int count = 0; count < 100; ++count)
    {
        const std::string key = services::MakeEventKey();
        EXPECT_EQ(key.size(), 36U);
        EXPECT_TRUE(services::IsEventKey(key)) << key;
    }
}

TEST(EventKey, IsNeverTheSame)
{
    std::set<std::string> keys;
    for (int count = 0; count < 1000; ++count)
    {
        keys.insert(services::MakeEventKey());
    }
    EXPECT_EQ(keys.size(), 1000U);
}

struct FormCase
{
    const char* name;
    const char* text;
    bool accepted;
};

class EventKeyForm : public testing::TestWithParam<FormCase>
{
};

TEST_P(EventKeyForm, IsJudgedExactly)
{
    EXPECT_EQ(services::IsEventKey(GetParam().text), GetParam().accepted);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, EventKeyForm,
    testing::Values(FormCase{"Good", "01234567-89ab-4cde-8f01-23456789abcd", true},
                    FormCase{"Empty", "", false},
                    FormCase{"TooShort", "01234567-89ab-4cde-8f01-23456789abc", false},
                    FormCase{"TooLong", "01234567-89ab-4cde-8f01-23456789abcde", false},
                    FormCase{"Capitals", "01234567-89AB-4cde-8f01-23456789abcd", false},
                    FormCase{"OtherVersion", "01234567-89ab-1cde-8f01-23456789abcd", false},
                    FormCase{"OtherVariant", "01234567-89ab-4cde-cf01-23456789abcd", false},
                    FormCase{"Quote", "01234567-89ab-4cde-8f01-23456789ab'd", false},
                    FormCase{"NoHyphen", "01234567089ab-4cde-8f01-23456789abcd", false}),
    [](const auto& run) { return run.param.name; });

} // namespace
