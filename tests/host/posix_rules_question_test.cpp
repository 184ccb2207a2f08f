// signcheck rules apply asks whoever sits at the terminal.

#include "tests/host/rulebook/rule_file_run.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace testing_support
{
namespace
{

using testing::HasSubstr;

class PosixRulesQuestion : public RuleFileTest
{
protected:
    // What the terminal shows when somebody types this answer.
    std::string ShownAfter(const std::string& typed)
    {
        const std::string file = m_folder.Write("rules.toml", "[[holder]]\nhuid = \"N-1\"\n");
        const std::string run =
            m_folder.Write("run.sh", std::string("exec '") + SIGNCHECK_PROGRAM + "' rules apply '" +
                                         file + "' --db '" + Db() + "'\n");
        const std::string answer = m_folder.Write("answer", typed);
        const std::string shown = m_folder.Path("shown");
        const std::string command =
            "script -qec 'sh " + run + "' /dev/null <" + answer + " >" + shown + " 2>&1";
        EXPECT_NE(std::system(command.c_str()), -1);
        return ReadWholeFile(shown);
    }

    std::size_t HoldersWritten()
    {
        return m_database.Query(L"SELECT HUID FROM SSR_HOLDER WHERE HUID = 'N-1'").size();
    }
};

TEST_F(PosixRulesQuestion, YesMakesTheChange)
{
    const std::string shown = ShownAfter("yes\n");

    EXPECT_THAT(shown, HasSubstr("Make this change? yes or no: "));
    EXPECT_THAT(shown, HasSubstr("Done: the database holds what the file says."));
    EXPECT_EQ(HoldersWritten(), 1U);
}

TEST_F(PosixRulesQuestion, AnythingElseChangesNothing)
{
    for (const std::string typed : {"no\n", "\n", "Yes please\n"})
    {
        EXPECT_THAT(ShownAfter(typed), HasSubstr("Nothing was changed."));
        EXPECT_EQ(HoldersWritten(), 0U);
    }
}

} // namespace
} // namespace testing_support
