#include "host/authority/progress.h"

#include <gtest/gtest.h>

namespace authority
{
namespace
{

TEST(SearchProgress, TellsWhatIsTriedAndHowLongTheRestTakes)
{
    EXPECT_EQ(ProgressText("sets of changes", 144, 576, 1.5),
              "[#####...............] 144/576 sets of changes, 96/s, 0:00:05 left, Ctrl-C ends it");
}

TEST(SearchProgress, CountsChoices)
{
    EXPECT_EQ(Choices(5, 0), 1U);
    EXPECT_EQ(Choices(5, 1), 5U);
    EXPECT_EQ(Choices(15, 3), 455U);
    EXPECT_EQ(Choices(2, 3), 0U);
    EXPECT_EQ(Choices(0, 1), 0U);
}

} // namespace
} // namespace authority
