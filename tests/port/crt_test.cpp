#include "port/crt.h"

#include <gtest/gtest.h>

namespace
{

int g_calls = 0;
bool g_told = false;

void Count(const wchar_t* expression, const wchar_t* function, const wchar_t* file,
           unsigned int line, std::uintptr_t reserved)
{
    ++g_calls;
    g_told = expression != nullptr || function != nullptr || file != nullptr || line != 0 ||
             reserved != 0;
}

/// Puts back the handler that was there.
class HandlerScope
{
public:
    explicit HandlerScope(_invalid_parameter_handler handler)
        : m_before(_set_invalid_parameter_handler(handler))
    {
    }
    ~HandlerScope() { _set_invalid_parameter_handler(m_before); }
    HandlerScope(const HandlerScope&) = delete;
    HandlerScope& operator=(const HandlerScope&) = delete;

private:
    _invalid_parameter_handler m_before;
};

TEST(InvalidParameterHandler, InstallingGivesBackTheOneBefore)
{
    const HandlerScope none(nullptr);
    EXPECT_EQ(_set_invalid_parameter_handler(Count), nullptr);
    EXPECT_EQ(_get_invalid_parameter_handler(), &Count);
    EXPECT_EQ(_set_invalid_parameter_handler(nullptr), &Count);
    EXPECT_EQ(_get_invalid_parameter_handler(), nullptr);
}

TEST(InvalidParameterHandler, IsCalledWithNothingToTell)
{
    const HandlerScope scope(Count);
    g_calls = 0;
    port::RaiseInvalidParameter();
    EXPECT_EQ(g_calls, 1);
    EXPECT_FALSE(g_told);
}

TEST(InvalidParameterHandlerDeathTest, WithoutOneTheProcessEnds)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const HandlerScope none(nullptr);
    EXPECT_DEATH(port::RaiseInvalidParameter(), "");
}

} // namespace
