#include "host/batch/readiness.h"

#include <gmock/gmock.h>

namespace batch
{
namespace
{

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

class WholeFiles : public testing::Test
{
protected:
    Readiness::Time At(int milli) const { return m_start + milliseconds(milli); }
    static Readiness::Look Look(const char* version, bool hasWriter = false)
    {
        return {std::string(version), hasWriter};
    }

    Readiness::Time m_start = Readiness::Clock::now();
    Readiness m_files = Readiness(milliseconds(1000));
};

TEST_F(WholeFiles, AreThoseThatWereClosed)
{
    m_files.Told("A", At(0));

    EXPECT_THAT(m_files.Due(At(0)), ElementsAre("A"));
    EXPECT_TRUE(m_files.IsWhole("A", Look("1"), At(0)));
    EXPECT_THAT(m_files.Due(At(5000)), IsEmpty());
    EXPECT_EQ(m_files.Waiting(), 0U);
}

TEST_F(WholeFiles, AreThoseThatWereFoundAndStayTheSameForAWhile)
{
    m_files.Found("A", At(0));

    EXPECT_FALSE(m_files.IsWhole("A", Look("1"), At(0)));
    EXPECT_THAT(m_files.Due(At(999)), IsEmpty());
    EXPECT_FALSE(m_files.IsWhole("A", Look("2"), At(1000)));
    EXPECT_THAT(m_files.Due(At(1999)), IsEmpty());
    EXPECT_TRUE(m_files.IsWhole("A", Look("2"), At(2000)));
}

TEST_F(WholeFiles, AreNoneThatSomebodyWrites)
{
    m_files.Told("A", At(0));

    EXPECT_FALSE(m_files.IsWhole("A", Look("1", true), At(0)));
    EXPECT_FALSE(m_files.IsWhole("A", Look("1", true), At(1000)));
    EXPECT_FALSE(m_files.IsWhole("A", Look("2", false), At(2000))) << "it has just changed";
    EXPECT_TRUE(m_files.IsWhole("A", Look("2", false), At(3000)));
}

TEST_F(WholeFiles, AreToldOfWhileTheyAreWaitedFor)
{
    m_files.Found("A", At(0));
    EXPECT_FALSE(m_files.IsWhole("A", Look("1"), At(0)));

    m_files.Told("A", At(100));

    EXPECT_THAT(m_files.Due(At(100)), ElementsAre("A"));
    EXPECT_TRUE(m_files.IsWhole("A", Look("2"), At(100)));
}

TEST_F(WholeFiles, AreNoneThatWentAway)
{
    m_files.Told("A", At(0));

    EXPECT_FALSE(m_files.IsWhole("A", {}, At(0)));
    EXPECT_EQ(m_files.Waiting(), 0U);
    EXPECT_FALSE(m_files.IsWhole("B", Look("1"), At(0))) << "nobody waits for it";
}

TEST_F(WholeFiles, AreLookedAtAgainWhenTheyWerePostponed)
{
    m_files.Told("A", At(0));
    m_files.Postpone("A", At(500));

    EXPECT_THAT(m_files.Due(At(499)), IsEmpty());
    EXPECT_THAT(m_files.Due(At(500)), ElementsAre("A"));
    EXPECT_TRUE(m_files.IsWhole("A", Look("1"), At(500)));
}

TEST_F(WholeFiles, FoundAgainKeepTheirTime)
{
    m_files.Found("A", At(0));
    EXPECT_FALSE(m_files.IsWhole("A", Look("1"), At(0)));

    m_files.Found("A", At(900));

    EXPECT_THAT(m_files.Due(At(999)), IsEmpty());
    EXPECT_TRUE(m_files.IsWhole("A", Look("1"), At(1000)));
}

} // namespace
} // namespace batch
