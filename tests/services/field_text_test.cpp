#include "services/field_text.h"

#include <gtest/gtest.h>

namespace
{

TEST(FieldText, EndsAtTheNulOrWithTheField)
{
    const char full[4] = {'A', 'B', 'C', 'D'};
    const char ended[4] = {'A', 'B', '\0', 'D'};
    const char empty[4] = {};
    EXPECT_EQ(services::FieldText(full), "ABCD");
    EXPECT_EQ(services::FieldText(ended), "AB");
    EXPECT_EQ(services::FieldText(empty), "");
}

} // namespace
