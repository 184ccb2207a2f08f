// What a failure at one named place does, told without the model.

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "signutils/signutils.h"
#include "tests/fault_driver/loaded.h"
#include "tests/testing/bank.h"
#include "tests/testing/temporary_folder.h"
#include "tests/testing/test_database.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using fault_driver::Bit;
using fault_driver::Entry;
using fault_driver::Kind;
using fault_driver::Plan;
using fault_driver::Reach;
using testing_support::Bank;
using testing_support::Contract;
using testing_support::Holder;
using testing_support::ScopedEnvironment;
using testing_support::TemporaryFolder;
using testing_support::TestDatabase;

class LostConnection : public testing::Test
{
protected:
    LostConnection() : m_control(fault_driver::LoadedControl())
    {
        m_control = fault_driver::Control();
        Bank(m_database).With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Ana Ruiz"));
    }
    ~LostConnection() override { m_control.plan = Plan(); }

    std::string ConnexionString() const
    {
        return fault_driver::ThroughFaultDriver(m_database.ConnexionString());
    }

    void Prepare(SignUtils& session) const
    {
        session.SetConnexionString(ConnexionString().c_str());
        session.SetContractInfo(1, 9, "PARTNER1", "SERVICE1", "CLIENT1", 1, "");
        session.SetMessageInfo("BANKFRPP", "ORDER0001", "pain.001.001.03", "MSG-1");
        session.SetAmountInfo(100.0, 100.0, "EUR");
    }

    /// The given one of the calls of this kind fails, from now on.
    void Fail(Entry entry, std::uint64_t number, Reach reach = Reach::Once)
    {
        m_control.counted = 0;
        m_control.plan = {number, Kind::Refuse, reach, "08S01", Bit(entry)};
    }

    TemporaryFolder m_folder;
    ScopedEnvironment m_spool{"SIGNUTILS_SPOOL", m_folder.Path("spool").c_str()};
    ScopedEnvironment m_pool{"SIGNUTILS_POOL", "0"};
    TestDatabase m_database;
    fault_driver::Control& m_control;
};

// Each connection to SQLite fetches one row while it is set up.
constexpr std::uint64_t kFetchesOfSetUp = 1;

TEST_F(LostConnection, BehindTheFirstOfTwoRulesTurnsARefusalIntoAnAcceptanceThatIsTold)
{
    Bank(m_database).With(Contract(L"C1").AloneBy(L"H1").AloneBy(L"H1").UpTo(L"50.00"));
    {
        SignUtils session;
        Prepare(session);
        EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), 2U);
    }
    SignUtils session;
    Prepare(session);
    Fail(Entry::Fetch, kFetchesOfSetUp + 2);
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), 1U);
    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_TRUE(outcome.ran);
    EXPECT_FALSE(outcome.rulesComplete);
    EXPECT_NE(std::string(outcome.problem.SafeGetString()).find("[08S01]"), std::string::npos);
}

TEST_F(LostConnection, WhileAHolderIsLookedUpIsToldApartFromAHolderNotFound)
{
    Bank(m_database).With(Contract(L"C1").AloneBy(L"H1"));
    SignUtils session;
    Prepare(session);
    Fail(Entry::Fetch, kFetchesOfSetUp + 3); // behind one rule and the end of the rules
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), 0U);
    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_TRUE(outcome.rulesComplete);
    EXPECT_FALSE(outcome.lookupsComplete);
}

TEST_F(LostConnection, OfASessionIsToldByEachLaterCheckAndANewSessionIsWhole)
{
    Bank(m_database).With(Contract(L"C1").AloneBy(L"H1"));
    SignUtils session;
    Prepare(session);
    Fail(Entry::Fetch, kFetchesOfSetUp + 1, Reach::Connection);
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), 0U);
    m_control.plan = Plan();

    EXPECT_EQ(session.CheckSignRules("order.xml", L""), 0U);
    EXPECT_FALSE(session.GetLastCheck().rulesComplete);
    EXPECT_FALSE(session.GetLastCheck().problem.IsEmpty());

    SignUtils fresh;
    Prepare(fresh);
    EXPECT_EQ(fresh.CheckSignRules("order.xml", L"Ana Ruiz"), 1U);
    EXPECT_TRUE(fresh.GetLastCheck().problem.IsEmpty());
}

class HandleThatFailsToGo : public LostConnection, public testing::WithParamInterface<Entry>
{
};

TEST_P(HandleThatFailsToGo, IsLetGoTheSecondTime)
{
    {
        CDatabase database;
        database.OpenEx(ConnexionString().c_str(), CDatabase::kNoOdbcDialog);
        Fail(GetParam(), 1);
        database.ExecuteSQLW(L"DELETE FROM HST_SIGNRULES");
    }
    EXPECT_EQ(m_control.faults, 1U);
    EXPECT_EQ(m_control.statementHandles.freed, m_control.statementHandles.allocated);
    EXPECT_EQ(m_control.connectionHandles.freed, m_control.connectionHandles.allocated);
    EXPECT_EQ(m_control.environmentHandles.freed, m_control.environmentHandles.allocated);
}

INSTANTIATE_TEST_SUITE_P(Calls, HandleThatFailsToGo,
                         testing::Values(Entry::FreeStatement, Entry::Disconnect),
                         [](const auto& test) {
                             return std::string(test.param == Entry::Disconnect ? "Connection"
                                                                                : "Statement");
                         });

TEST_F(LostConnection, DriverSaysWhatTheRealOneSays)
{
    CDatabase database;
    database.OpenEx(ConnexionString().c_str(), CDatabase::kNoOdbcDialog);
    std::string text;
    database::GuardDatabase(
        [&] { database.ExecuteSQLW(L"DELETE FROM NOWHERE"); },
        [&](const CDBException& raised) { text = raised.GetFirstText().SafeGetString(); }, [] {});
    EXPECT_NE(text.find("no such table: NOWHERE"), std::string::npos) << text;
}

TEST_F(LostConnection, DriverWithWideEntryPointsIsGivenWideTextsAndKeepsTheirLetters)
{
    fault_driver::Control& control = fault_driver::LoadedControl(fault_driver::Entries::WideAsWell);
    control = fault_driver::Control();
    const std::wstring name = L"\u00C9lodie \u0427 \U0001F58B";
    {
        CDatabase database;
        database.OpenEx(fault_driver::ThroughFaultDriver(m_database.ConnexionString(),
                                                         fault_driver::Entries::WideAsWell)
                            .c_str(),
                        CDatabase::kNoOdbcDialog);
        EXPECT_GE(control.wideTexts, 1U);
        const std::size_t before = control.wideTexts;
        database.ExecuteSQLW((L"UPDATE SSR_HOLDER SET LNAME = N'" + name + L"'").c_str());
        EXPECT_EQ(control.wideTexts, before + 1);
    }
    EXPECT_EQ(m_database.Query(L"SELECT LNAME FROM SSR_HOLDER"),
              std::vector<testing_support::Row>{testing_support::Row{name}});
    EXPECT_EQ(control.statementHandles.freed, control.statementHandles.allocated);
    EXPECT_EQ(control.connectionHandles.freed, control.connectionHandles.allocated);
}

TEST_F(LostConnection, IsToldByADriverWithWideEntryPointsInItsOwnWords)
{
    CDatabase database;
    database.OpenEx(fault_driver::ThroughFaultDriver(m_database.ConnexionString(),
                                                     fault_driver::Entries::WideAsWell)
                        .c_str(),
                    CDatabase::kNoOdbcDialog);
    std::string text;
    database::GuardDatabase(
        [&] { database.ExecuteSQLW(L"DELETE FROM NOWHERE"); },
        [&](const CDBException& raised) { text = raised.GetFirstText().SafeGetString(); }, [] {});
    EXPECT_NE(text.find("no such table: NOWHERE"), std::string::npos) << text;
}

} // namespace
