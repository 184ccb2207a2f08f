// What a check asks of the database, counted by a driver that answers at once. The driver is loaded
// by its path, which only the driver manager of POSIX takes in place of a name.

#include "benchmarks/null_driver/null_driver.h"
#include "database/idle_pool.h"
#include "signutils/signutils.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using testing_support::ScopedEnvironment;
using testing_support::TemporaryFolder;

using Statements = std::vector<std::u16string>;

class CountedCalls : public testing::TestWithParam<std::size_t>
{
protected:
    CountedCalls()
        : m_spool("SIGNUTILS_SPOOL", m_folder.Path("spool").c_str()),
          m_pool("SIGNUTILS_POOL", nullptr)
    {
        database::EmptyIdlePool();
    }
    ~CountedCalls() override { database::EmptyIdlePool(); }

    /// One check of a new object, which both holders of every rule have signed for.
    void Check()
    {
        SignUtils session(nullptr, nullptr);
        session.SetConnexionString(m_driver.ConnexionString(GetParam()).c_str());
        session.SetContractInfo(1, 9, "IBEREXPO", "CCT", "NOMINAS", 1, "");
        session.SetAmountInfo(45000.00, 2500.00, "EUR");
        session.SetMessageInfo("BANKFRPP", "A001", "pain.001.001.03", "A001");
        EXPECT_EQ(session.CheckSignRules("order.xml", L"First Signer;Second Signer"), 1U);
    }

    Statements ExpectedStatements() const;

    TemporaryFolder m_folder;
    ScopedEnvironment m_spool;
    ScopedEnvironment m_pool;
    null_driver::NullDriver m_driver;
};

/// The beginnings that a statement may have here, as far as they tell it from the others.
std::u16string KindOf(const std::u16string& statement)
{
    for (const std::u16string_view kind :
         {u"SELECT C.CUID", u"SELECT H.HUID, VPNAME", u"INSERT INTO HST_SIGNRULES",
          u"INSERT INTO EVT_JOURNAL", u"SELECT 1", u"SET "})
    {
        if (statement.starts_with(kind))
        {
            return std::u16string(kind);
        }
    }
    return statement;
}

Statements KindsOf(Statements statements)
{
    for (std::u16string& each : statements)
    {
        each = KindOf(each);
    }
    return statements;
}

/// Those of the check itself, without what setting up and testing connections needs.
Statements OfTheCheck(Statements statements)
{
    std::erase_if(statements, [](const std::u16string& each)
                  { return each == u"SELECT 1" || each.starts_with(u"SET "); });
    return statements;
}

Statements CountedCalls::ExpectedStatements() const
{
    Statements expected = {u"SELECT C.CUID"};
    expected.insert(expected.end(), 2 * GetParam(), u"SELECT H.HUID, VPNAME");
    expected.insert(expected.end(), GetParam(), u"INSERT INTO HST_SIGNRULES");
    expected.push_back(u"INSERT INTO EVT_JOURNAL");
    return expected;
}

TEST_P(CountedCalls, FirstCheckRunsOneQueryTwoLookUpsARuleOneRowARuleAndOneEvent)
{
    const Statements statements = m_driver.StatementsOf([this] { Check(); });

    EXPECT_EQ(KindsOf(OfTheCheck(statements)), ExpectedStatements());
}

TEST_P(CountedCalls, LaterCheckRunsTheSameStatements)
{
    Check();
    const Statements statements = m_driver.StatementsOf([this] { Check(); });

    EXPECT_EQ(KindsOf(OfTheCheck(statements)), ExpectedStatements());
}

TEST_P(CountedCalls, FirstCheckConnectsForItsRulesAndForTheHistoryWhoseConnectionTheJournalTakes)
{
    EXPECT_EQ(m_driver.CountDuring([this] { Check(); }).connects, 2U);
}

TEST_P(CountedCalls, LaterCheckConnectsNoMoreAndTestsEachConnectionOnce)
{
    Check();
    Statements statements;
    const null_driver::Counts counts =
        m_driver.CountDuring([&] { statements = m_driver.StatementsOf([this] { Check(); }); });

    EXPECT_EQ(counts.connects, 0U);
    EXPECT_EQ(std::count(statements.begin(), statements.end(), u"SELECT 1"), 3);
    EXPECT_EQ(statements.size(), ExpectedStatements().size() + 3);
}

TEST_P(CountedCalls, WithoutThePoolEveryCheckConnectsForRulesHistoryAndJournal)
{
    const ScopedEnvironment off("SIGNUTILS_POOL", "0");
    Check();
    EXPECT_EQ(m_driver.CountDuring([this] { Check(); }).connects, 3U);
}

TEST_P(CountedCalls, NoColumnIsDescribedOrAskedForOnItsOwn)
{
    const null_driver::Counts counts = m_driver.CountDuring([this] { Check(); });

    EXPECT_EQ(counts.metadata, 0U);
    EXPECT_EQ(counts.values, 0U);
}

TEST_P(CountedCalls, EachQueryIsFetchedToItsEndAndNoFurther)
{
    Check();
    const null_driver::Counts counts = m_driver.CountDuring([this] { Check(); });

    const std::size_t rules = GetParam() + 1;
    const std::size_t holders = 2 * 2 * GetParam();
    EXPECT_EQ(counts.fetches, rules + holders);
}

INSTANTIATE_TEST_SUITE_P(Rules, CountedCalls, testing::Values(1U, 2U, 20U),
                         [](const auto& each) { return std::to_string(each.param); });

} // namespace
