#include "tests/signutils/c_handles.h"
#include "tests/signutils/c_unit.h"
#include "tests/signutils/session_fixture.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <limits>
#include <string>

using namespace testing_support;
using ::testing::HasSubstr;

namespace
{

class CCheck : public SessionTest
{
protected:
    CCheck() { PrepareC(m_session, m_database.ConnexionString()); }

    std::uint32_t Judge(const std::string& signers)
    {
        std::uint32_t verdict = 4711;
        EXPECT_EQ(SignUtilsCheckSignRules(m_session, "order.xml", signers.c_str(), &verdict),
                  SIGNUTILS_OK)
            << m_session.Error();
        return verdict;
    }

    CSession m_session;
};

TEST_F(CCheck, AcceptedOrderIsRecordedAndJournalled)
{
    EXPECT_EQ(Judge("Ana Ruiz"), static_cast<std::uint32_t>(SIGNUTILS_ACCEPTED));

    const SignUtilsCheck check = LastCheckOf(m_session);
    EXPECT_EQ(check.size, sizeof check);
    EXPECT_EQ(check.ran, 1);
    EXPECT_EQ(check.rulesComplete, 1);
    EXPECT_EQ(check.lookupsComplete, 1);
    EXPECT_EQ(check.amountsKnown, 1);
    EXPECT_EQ(check.verdict, static_cast<std::uint32_t>(SIGNUTILS_ACCEPTED));
    EXPECT_EQ(check.totalAmount, 100.00);
    EXPECT_EQ(check.maxOrderAmount, 100.00);
    EXPECT_EQ(check.orderCount, 0);
    EXPECT_EQ(check.rowsDue, 1U);
    EXPECT_EQ(check.rowsWritten, 1U);
    EXPECT_EQ(check.journal, SIGNUTILS_JOURNAL_WRITTEN);
    EXPECT_EQ(check.report, SIGNUTILS_REPORT_NOT_DUE);
    EXPECT_STREQ(check.problem, "");
    EXPECT_STREQ(check.amountsProblem, "");
    EXPECT_STREQ(check.currency, "EUR");
    EXPECT_STREQ(check.reasonCode, "");
    EXPECT_STREQ(check.reportProblem, "");
    EXPECT_EQ(m_database.Query(L"SELECT STATUT FROM HST_SIGNRULES").size(), 1U);
    ASSERT_EQ(ReadJournal(m_database).size(), 1U);
    EXPECT_THAT(ReadJournal(m_database)[0].text, HasSubstr(L"IdFichier=7\r\n"));
}

TEST_F(CCheck, RefusedOrderIsAnsweredWithAReportInUtf8)
{
    Bank(m_database)
        .With(Holder(L"H2").Named(L"Élodie", L"Œuvray").Certificate(L"Élodie Œuvray"))
        .With(Contract(L"C2").AloneBy(L"H2").UpTo(L"10.00"));
    ASSERT_EQ(SignUtilsSetPSRWarning(m_session, "STATUS"), SIGNUTILS_OK);
    EXPECT_EQ(Judge("Élodie Œuvray"), static_cast<std::uint32_t>(SIGNUTILS_REFUSED));

    const SignUtilsCheck check = LastCheckOf(m_session);
    EXPECT_EQ(check.ran, 1);
    EXPECT_STREQ(check.reasonCode, "AM02");
    EXPECT_THAT(check.reasonText, HasSubstr("Œuvray Élodie"));
    EXPECT_EQ(check.report, SIGNUTILS_REPORT_HANDED_ON);
    EXPECT_EQ(check.reportFileId, 1U);

    const char* text = nullptr;
    ASSERT_EQ(SignUtilsGetPSRWarning(m_session, &text), SIGNUTILS_OK);
    EXPECT_THAT(text, HasSubstr("Œuvray Élodie"));
    EXPECT_EQ(OnlyReport(), text);
    ASSERT_EQ(SignUtilsGetExtraInfo(m_session, &text), SIGNUTILS_OK);
    EXPECT_STREQ(text, "PSR Generated in STATUS=1");
}

TEST_F(CCheck, SignersNobodyKnowsMatchNoRule)
{
    EXPECT_EQ(Judge("Łukasz Nowak"), static_cast<std::uint32_t>(SIGNUTILS_NO_RULE));
    EXPECT_STREQ(LastCheckOf(m_session).reasonCode, "NARR");
    EXPECT_EQ(m_database.Query(L"SELECT CNS FROM HST_SIGNRULES")[0][0], L"\u0141ukasz Nowak");
}

TEST_F(CCheck, CheckWithoutADatabaseSaysThatItWasNotRun)
{
    ASSERT_EQ(SignUtilsSetConnexionString(m_session, ""), SIGNUTILS_OK);
    EXPECT_EQ(Judge("Ana Ruiz"), static_cast<std::uint32_t>(SIGNUTILS_REFUSED));
    const SignUtilsCheck check = LastCheckOf(m_session);
    EXPECT_EQ(check.ran, 0);
    EXPECT_STREQ(check.problem, "DSN not defined");
}

TEST_F(CCheck, AmountsThatAreNoNumbersAreToldAsUnknown)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    ASSERT_EQ(SignUtilsSetAmountInfo(m_session, nan, 1.0, "EUR"), SIGNUTILS_OK);
    Judge("Ana Ruiz");
    const SignUtilsCheck check = LastCheckOf(m_session);
    EXPECT_EQ(check.amountsKnown, 0);
    EXPECT_STRNE(check.amountsProblem, "");
}

TEST_F(CCheck, RulesAloneGiveVerdictAndReasons)
{
    std::uint32_t verdict = 4711;
    const char* code = nullptr;
    const char* text = nullptr;
    ASSERT_EQ(SignUtilsCheckSignRulesFor(m_session, "Ana Ruiz", "order.xml", 1000.01, 1.0, "EUR",
                                         &verdict, &code, &text),
              SIGNUTILS_OK);
    EXPECT_EQ(verdict, static_cast<std::uint32_t>(SIGNUTILS_REFUSED));
    EXPECT_STREQ(code, "AM02");
    EXPECT_THAT(text, HasSubstr("1000.01"));
    EXPECT_EQ(LastCheckOf(m_session).totalAmount, 1000.01);
}

TEST_F(CCheck, RulesThatAreSatisfiedGiveNoReasons)
{
    std::uint32_t verdict = 4711;
    const char* code = nullptr;
    const char* text = nullptr;
    ASSERT_EQ(SignUtilsCheckSignRulesFor(m_session, "Ana Ruiz", "order.xml", 1000.00, 1.0, nullptr,
                                         &verdict, &code, &text),
              SIGNUTILS_OK);
    EXPECT_EQ(verdict, static_cast<std::uint32_t>(SIGNUTILS_ACCEPTED));
    EXPECT_STREQ(code, "");
    EXPECT_STREQ(text, "");
}

TEST_F(CCheck, LastCheckOfAFreshSessionHasNotRun)
{
    const CSession fresh;
    const SignUtilsCheck check = LastCheckOf(fresh);
    EXPECT_EQ(check.ran, 0);
    EXPECT_EQ(check.verdict, 0U); // nothing was judged, so there is no verdict to keep
    EXPECT_STREQ(check.problem, "");
}

TEST_F(CCheck, TextStaysUntilTheNextCallHasReturnedAndMayBeItsArgument)
{
    const char* name = nullptr;
    ASSERT_EQ(SignUtilsGetProtocolName(m_session, 9, &name), SIGNUTILS_OK);
    ASSERT_STREQ(name, "Test protocol");
    ASSERT_EQ(SignUtilsSetRefRequest(m_session, name), SIGNUTILS_OK);
    ASSERT_EQ(SignUtilsLogEvent(m_session, 0, "message"), SIGNUTILS_OK);
    EXPECT_EQ(ReadJournal(m_database).back().reference, L"Test protocol");
}

TEST_F(CCheck, ReadingTheErrorTextKeepsTheTextsOfTheLastCall)
{
    const char* name = nullptr;
    ASSERT_EQ(SignUtilsGetProtocolName(m_session, 9, &name), SIGNUTILS_OK);
    EXPECT_EQ(m_session.Error(), "");
    EXPECT_STREQ(name, "Test protocol");
}

TEST_F(CCheck, HostWrittenInCJudgesAnOrder)
{
    CUnitResult result = {};
    const std::string database = m_database.ConnexionString();
    EXPECT_EQ(CUnitJudge(database.c_str(), "Ana Ruiz", 1000.01, &result), SIGNUTILS_OK);
    EXPECT_EQ(result.verdict, static_cast<std::uint32_t>(SIGNUTILS_REFUSED));
    EXPECT_EQ(result.ran, 1);
    EXPECT_STREQ(result.reasonCode, "AM02");
}

TEST_F(CCheck, HostWrittenInCReadsWhyATextWasRefused)
{
    CUnitResult result = {};
    EXPECT_EQ(CUnitJudge("\xFF", "Ana Ruiz", 1.0, &result), SIGNUTILS_NOT_UTF8);
    EXPECT_THAT(result.error, HasSubstr("connexionString: byte 1 "));
}

} // namespace
