#include "tests/signutils/session_fixture.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <string>

using namespace testing_support;
using ::testing::HasSubstr;
using ::testing::Not;

namespace
{

class LastCheck : public SessionTest
{
};

TEST_F(LastCheck, FreshSessionHasRunNothing)
{
    const SignUtils session;
    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_FALSE(outcome.ran);
    EXPECT_FALSE(outcome.rulesComplete);
    EXPECT_FALSE(outcome.lookupsComplete);
    EXPECT_FALSE(outcome.amountsKnown);
    EXPECT_EQ(outcome.verdict, 0U);
    EXPECT_EQ(outcome.rowsDue, 0U);
    EXPECT_EQ(outcome.journal, JournalState::NotDue);
    EXPECT_EQ(outcome.report, ReportState::NotDue);
}

TEST_F(LastCheck, TellsASuccessWhole)
{
    SignUtils session;
    Prepare(session);
    session.SetAmountInfo(900.50, 300.25, "EUR");
    session.CheckSignRules("order.xml", L"Ana Ruiz");

    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_TRUE(outcome.ran);
    EXPECT_TRUE(outcome.rulesComplete);
    EXPECT_TRUE(outcome.lookupsComplete);
    EXPECT_TRUE(outcome.amountsKnown);
    EXPECT_EQ(outcome.verdict, kSuccess);
    EXPECT_TRUE(outcome.problem.IsEmpty()) << outcome.problem.SafeGetString();
    EXPECT_TRUE(outcome.amountsProblem.IsEmpty());
    EXPECT_EQ(outcome.totalAmount, 900.50);
    EXPECT_EQ(outcome.maxOrderAmount, 300.25);
    EXPECT_EQ(outcome.orderCount, 0);
    EXPECT_STREQ(outcome.currency.SafeGetString(), "EUR");
    EXPECT_TRUE(outcome.reasonCode.IsEmpty());
    EXPECT_TRUE(outcome.reasonText.IsEmpty());
    EXPECT_EQ(outcome.rowsDue, 1U);
    EXPECT_EQ(outcome.rowsWritten, 1U);
    EXPECT_EQ(outcome.journal, JournalState::Written);
    EXPECT_EQ(outcome.report, ReportState::NotDue);
    EXPECT_EQ(outcome.reportFileId, 0U);
}

TEST_F(LastCheck, TellsARefusalWithItsReasonAndReport)
{
    SignUtils session;
    Prepare(session);
    session.SetAmountInfo(1000.01, 1.00, "EUR");
    session.SetPSRWarning("STATUS");
    session.CheckSignRules("order.xml", L"Ana Ruiz");

    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_TRUE(outcome.ran);
    EXPECT_EQ(outcome.verdict, kRefused);
    EXPECT_STREQ(outcome.reasonCode.SafeGetString(), "AM02");
    EXPECT_THAT(std::wstring(outcome.reasonText.SafeGetString()), HasSubstr(L"Ruiz"));
    EXPECT_EQ(outcome.report, ReportState::HandedOn);
    EXPECT_NE(outcome.reportFileId, 0U);
    EXPECT_EQ(outcome.journal, JournalState::Written);
}

TEST_F(LastCheck, TellsThatNoRuleConcernsTheSigners)
{
    SignUtils session;
    Prepare(session);
    session.CheckSignRules("order.xml", L"Nobody");

    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_TRUE(outcome.ran);
    EXPECT_EQ(outcome.verdict, kNoRule);
    EXPECT_STREQ(outcome.reasonCode.SafeGetString(), "NARR");
    EXPECT_EQ(outcome.rowsDue, 1U);
    EXPECT_EQ(outcome.rowsWritten, 1U);
}

TEST_F(LastCheck, TellsACheckWithoutAConnectionTextFromARefusal)
{
    SignUtils session;
    Prepare(session);
    session.SetConnexionString("");
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);

    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_FALSE(outcome.ran);
    EXPECT_FALSE(outcome.rulesComplete);
    EXPECT_EQ(outcome.verdict, kRefused);
    EXPECT_FALSE(outcome.problem.IsEmpty());
    EXPECT_EQ(outcome.rowsDue, 0U);
    EXPECT_EQ(outcome.rowsWritten, 0U);
    EXPECT_EQ(outcome.journal, JournalState::NotDue);
}

TEST_F(LastCheck, TellsACheckWithoutAConnectionFromARefusal)
{
    SignUtils session;
    Prepare(session);
    session.SetConnexionString("Driver=no such driver");
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);

    EXPECT_FALSE(session.GetLastCheck().ran);
    EXPECT_FALSE(session.GetLastCheck().problem.IsEmpty());
    EXPECT_EQ(session.GetLastCheck().journal, JournalState::NotDue);
}

TEST_F(LastCheck, ReportOfACheckThatCouldNotRunLeavesItsEventInTheSpool)
{
    SignUtils session;
    Prepare(session);
    session.SetConnexionString("Driver=no such driver");
    session.SetPSRWarning("STATUS");
    session.CheckSignRules("order.xml", L"Ana Ruiz");

    EXPECT_EQ(session.GetLastCheck().report, ReportState::HandedOn);
    EXPECT_EQ(session.GetLastCheck().journal, JournalState::Spooled);
}

TEST_F(LastCheck, SessionConnectionThatFailedIsOpenedAgainByTheNextCheck)
{
    SignUtils session;
    Prepare(session);
    session.SetConnexionString("Driver=no such driver");
    EXPECT_EQ(session.CheckSignRules("order.xml", L""), kRefused);
    session.SetConnexionString(m_database.ConnexionString().c_str());
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kSuccess);
    EXPECT_TRUE(session.GetLastCheck().ran);
}

TEST_F(LastCheck, LostHistoryRowIsTold)
{
    m_database.Execute(L"DROP TABLE HST_SIGNRULES");
    SignUtils session;
    Prepare(session);
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kSuccess);

    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_TRUE(outcome.ran);
    EXPECT_EQ(outcome.rowsDue, 1U);
    EXPECT_EQ(outcome.rowsWritten, 0U);
    EXPECT_FALSE(outcome.problem.IsEmpty());
    EXPECT_EQ(outcome.journal, JournalState::Written);
}

TEST_F(LastCheck, EventThatIsOnlySpooledIsTold)
{
    m_database.Execute(L"DROP TABLE EVT_JOURNAL");
    SignUtils session;
    Prepare(session);
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kSuccess);

    EXPECT_EQ(session.GetLastCheck().journal, JournalState::Spooled);
    EXPECT_FALSE(FilesBelow(SpoolFolder()).empty());
}

TEST_F(LastCheck, EventThatIsLostIsTold)
{
    m_database.Execute(L"DROP TABLE EVT_JOURNAL");
    const std::string file = m_folder.Write("no folder", "x");
    const ScopedEnvironment spool("SIGNUTILS_SPOOL", file.c_str());
    SignUtils session;
    Prepare(session);
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kSuccess);

    EXPECT_EQ(session.GetLastCheck().journal, JournalState::Lost);
}

TEST_F(LastCheck, AmountsThatCannotBeWorkedOutAreTold)
{
    SignUtils session;
    Prepare(session);
    session.SetFormatInfo("", "", "");
    session.CheckSignRules("order.xml", L"Ana Ruiz");

    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_TRUE(outcome.ran);
    EXPECT_FALSE(outcome.amountsKnown);
    EXPECT_FALSE(outcome.amountsProblem.IsEmpty());
    EXPECT_EQ(outcome.totalAmount, 0.0);
    EXPECT_TRUE(outcome.currency.IsEmpty());
}

TEST_F(LastCheck, GivenAmountsThatAreNotFiniteAreNotKnown)
{
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    struct
    {
        double total;
        double largest;
        unsigned long verdict;
    } const cases[] = {
        {notANumber, 1.00, kSuccess}, {1.00, notANumber, kSuccess}, {infinite, 1.00, kRefused},
        {1.00, infinite, kSuccess},   {-infinite, 1.00, kSuccess},
    };
    for (const auto& each : cases)
    {
        SignUtils session;
        Prepare(session);
        session.SetAmountInfo(each.total, each.largest, "EUR");
        EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), each.verdict)
            << each.total << " / " << each.largest;

        const CheckOutcome& outcome = session.GetLastCheck();
        EXPECT_TRUE(outcome.ran);
        EXPECT_FALSE(outcome.amountsKnown) << each.total << " / " << each.largest;
        EXPECT_STREQ(outcome.amountsProblem.SafeGetString(),
                     "The given amounts are not both finite numbers");
    }
}

TEST_F(LastCheck, AmountsOfRulesAloneThatAreNotFiniteAreNotKnown)
{
    SignUtils session;
    Prepare(session);
    TSimpleString reasonCode;
    TSimpleStringW reasonText;
    EXPECT_EQ(session.CheckSignRulesFor(reasonCode, reasonText, L"Ana Ruiz", "order.xml",
                                        std::numeric_limits<double>::quiet_NaN(), 1.00, "EUR"),
              kSuccess);
    EXPECT_FALSE(session.GetLastCheck().amountsKnown);
    EXPECT_TRUE(std::isnan(session.GetLastCheck().totalAmount));
    EXPECT_STREQ(session.GetLastCheck().amountsProblem.SafeGetString(),
                 "The given amounts are not both finite numbers");
}

TEST_F(LastCheck, LookUpThatCouldNotBeReadIsTold)
{
    m_database.Execute(L"DROP TABLE SSR_HOLDERID");
    SignUtils session;
    Prepare(session);
    session.CheckSignRules("order.xml", L"Ana Ruiz");

    EXPECT_TRUE(session.GetLastCheck().ran);
    EXPECT_TRUE(session.GetLastCheck().rulesComplete);
    EXPECT_FALSE(session.GetLastCheck().lookupsComplete);
    EXPECT_FALSE(session.GetLastCheck().problem.IsEmpty());
}

TEST_F(LastCheck, ReasonWhyAReportWasNotHandedOnIsTold)
{
    SignUtils session;
    Prepare(session);
    session.SetAmountInfo(1000.01, 1.00, "EUR");
    session.SetPSRWarning("STATUS");
    const std::string store = m_folder.Write("no folder", "a file stands where the store should");
    session.SetContractInfo(1, 9, "PARTNER1", "SERVICE1", "CLIENT1", 1, store.c_str());
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);

    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_EQ(outcome.report, ReportState::NotHandedOn);
    EXPECT_THAT(std::string(outcome.reportProblem.SafeGetString()), HasSubstr(store));
    EXPECT_THAT(std::string(outcome.reportProblem.SafeGetString()), Not(HasSubstr("\n")));

    session.SetContractInfo(1, 9, "PARTNER1", "SERVICE1", "CLIENT1", 1, "");
    session.CheckSignRules("order.xml", L"");
    EXPECT_EQ(outcome.report, ReportState::HandedOn);
    EXPECT_TRUE(outcome.reportProblem.IsEmpty());
}

TEST_F(LastCheck, NameThatTheStoreRefusesIsTold)
{
    SignUtils session;
    Prepare(session);
    session.SetContractInfo(1, 9, "..", "SERVICE1", "CLIENT1", 1, "");
    session.SetConnexionString("");
    session.SetPSRWarning("STATUS");
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);

    EXPECT_THAT(std::string(session.GetLastCheck().reportProblem.SafeGetString()),
                HasSubstr("partner"));
}

TEST_F(LastCheck, ReportThatCannotBeSavedIsTold)
{
    const std::string missing = m_folder.Path("missing");
    const ScopedEnvironment posix("TMPDIR", missing.c_str());
    const ScopedEnvironment windows("TMP", missing.c_str());
    const ScopedEnvironment windowsToo("TEMP", missing.c_str());
    SignUtils session;
    Prepare(session);
    session.SetAmountInfo(1000.01, 1.00, "EUR");
    session.SetPSRWarning("STATUS");
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);

    EXPECT_EQ(session.GetLastCheck().report, ReportState::NotHandedOn);
    EXPECT_STREQ(session.GetLastCheck().reportProblem.SafeGetString(),
                 "The report cannot be written to a temporary file");
}

TEST_F(LastCheck, IsResetWhenACheckStarts)
{
    SignUtils session;
    Prepare(session);
    session.SetAmountInfo(1000.01, 1.00, "EUR");
    session.SetPSRWarning("STATUS");
    session.CheckSignRules("order.xml", L"Ana Ruiz");
    ASSERT_EQ(session.GetLastCheck().report, ReportState::HandedOn);

    session.SetPSRWarning("");
    session.SetAmountInfo(1.00, 1.00, "");
    EXPECT_EQ(session.CheckSignRules("order.xml", L""), kSuccess);
    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_EQ(outcome.verdict, kSuccess);
    EXPECT_EQ(outcome.report, ReportState::NotDue);
    EXPECT_EQ(outcome.reportFileId, 0U);
    EXPECT_TRUE(outcome.reasonCode.IsEmpty());
    EXPECT_TRUE(outcome.currency.IsEmpty());
}

TEST_F(LastCheck, RulesAloneAreACheckOfTheirOwn)
{
    SignUtils session;
    Prepare(session);
    session.SetAmountInfo(1000.01, 1.00, "EUR");
    session.SetPSRWarning("STATUS");
    session.CheckSignRules("order.xml", L"Ana Ruiz");

    TSimpleString reasonCode("STALE");
    TSimpleStringW reasonText(L"stale");
    EXPECT_EQ(
        session.CheckSignRulesFor(reasonCode, reasonText, L"", "order.xml", 12.00, 6.00, "USD"),
        kSuccess);
    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_TRUE(outcome.ran);
    EXPECT_EQ(outcome.verdict, kSuccess);
    EXPECT_TRUE(outcome.amountsKnown);
    EXPECT_EQ(outcome.totalAmount, 12.00);
    EXPECT_EQ(outcome.maxOrderAmount, 6.00);
    EXPECT_STREQ(outcome.currency.SafeGetString(), "USD");
    EXPECT_TRUE(outcome.reasonCode.IsEmpty());
    EXPECT_EQ(outcome.report, ReportState::NotDue);
    EXPECT_EQ(outcome.journal, JournalState::Written);
}

TEST_F(LastCheck, RulesAloneTellTheReasonOfARefusal)
{
    SignUtils session;
    Prepare(session);
    TSimpleString reasonCode;
    TSimpleStringW reasonText;
    session.CheckSignRulesFor(reasonCode, reasonText, L"Ana Ruiz", "order.xml", 1000.01, 1.00,
                              nullptr);

    EXPECT_STREQ(session.GetLastCheck().reasonCode.SafeGetString(), "AM02");
    EXPECT_TRUE(session.GetLastCheck().reasonText == reasonText.SafeGetString());
}

TEST_F(LastCheck, CurrencyBeyond255CharactersIsCut)
{
    SignUtils session;
    Prepare(session);
    session.SetAmountInfo(1.00, 1.00, std::string(300, 'E').c_str());
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kSuccess);

    EXPECT_EQ(session.GetLastCheck().currency.SafeGetString(), std::string(255, 'E'));
}

} // namespace
