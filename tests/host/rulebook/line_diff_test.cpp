#include "host/rulebook/line_diff.h"

#include <gmock/gmock.h>

namespace rulebook
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

LineChange Added(const std::string& text)
{
    return {true, text};
}

LineChange Removed(const std::string& text)
{
    return {false, text};
}

TEST(LineDiff, EqualTextsDifferInNoLine)
{
    EXPECT_THAT(ChangedLines("a\nb\n", "a\nb\n"), IsEmpty());
    EXPECT_THAT(ChangedLines("", ""), IsEmpty());
}

TEST(LineDiff, AChangedLineGoesBeforeItsSuccessorComes)
{
    EXPECT_THAT(ChangedLines("a\nb\nc\n", "a\nx\nc\n"), ElementsAre(Removed("b"), Added("x")));
}

TEST(LineDiff, TheFewestLinesChange)
{
    EXPECT_THAT(ChangedLines("a\nb\nc\nd\n", "x\nb\nd\ny\n"),
                ElementsAre(Removed("a"), Added("x"), Removed("c"), Added("y")));
}

TEST(LineDiff, ALineThatMovedGoesAndComes)
{
    EXPECT_THAT(ChangedLines("a\nb\nc\n", "b\nc\na\n"), ElementsAre(Removed("a"), Added("a")));
}

TEST(LineDiff, OneEmptyTextIsAllOfTheOther)
{
    EXPECT_THAT(ChangedLines("", "a\nb\n"), ElementsAre(Added("a"), Added("b")));
    EXPECT_THAT(ChangedLines("a\nb", ""), ElementsAre(Removed("a"), Removed("b")));
}

TEST(LineDiff, RepeatedLinesAreNotMixedUp)
{
    EXPECT_THAT(ChangedLines("a\na\n", "a\n"), ElementsAre(Removed("a")));
    EXPECT_THAT(ChangedLines("a\n", "a\nb\na\n").size(), 2U);
}

TEST(LineDiff, TextsTooLongToCompareGoAndComeWhole)
{
    std::string before;
    std::string after;
    for (int line = 0; line < 5000; ++line)
    {
        before += "before " + std::to_string(line) + "\n";
        after += "after " + std::to_string(line) + "\n";
    }

    const auto changes = ChangedLines(before, after);

    ASSERT_EQ(changes.size(), 10000U);
    EXPECT_EQ(changes.front(), Removed("before 0"));
    EXPECT_EQ(changes[5000], Added("after 0"));
}

} // namespace
} // namespace rulebook
