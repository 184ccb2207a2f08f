#include "services/system_error.h"

#include "port/kernel.h"

#include <gtest/gtest.h>

namespace
{

TEST(SystemErrorText, NamesWhatIsKnownAndTheNumberAlways)
{
    EXPECT_EQ(services::SystemErrorText(ERROR_ACCESS_DENIED), "access denied (system error 5)");
    EXPECT_EQ(services::SystemErrorText(ERROR_DISK_FULL), "disk full (system error 112)");
    EXPECT_EQ(services::SystemErrorText(4711), "system error 4711");
}

TEST(OneLine, ReplacesControlCharacters)
{
    EXPECT_EQ(services::OneLine("a\r\nb\tc\x7F d\xE9"), "a??b?c? d\xE9");
}

} // namespace
