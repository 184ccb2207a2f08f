#include "tests/amounts/scripted_engine.h"
#include "tests/signutils/c_handles.h"
#include "tests/signutils/session_fixture.h"

#include <gmock/gmock.h>

#include <string>

// The amounts of an order file as a session works them out; the engine is the scripted one.

using amounts_tests::ComApartment;
using amounts_tests::Script;
using amounts_tests::ScriptedEngine;
using namespace testing_support;
using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::IsEmpty;

namespace
{

// Three lines of headers and the ruler stand before the rows.
const std::string kHeader = "RECORD;CORPS\r\n16;16\r\n\"RECORD\";\"CORPS\"\r\n----\r\n";

class SessionAmounts : public SessionTest
{
protected:
    SessionAmounts() { Prepare(m_session); }

    // An engine that writes one remittance of two orders, or nothing.
    Script Writing(const std::string& total, const std::string& largest, bool files = true)
    {
        Script script;
        script.onExecute = [=, this](const std::wstring&)
        {
            if (files)
            {
                m_folder.Write("order.xml.veu.bp",
                               kHeader + "\"1\";\"1\";\"" + total + "\";\"EUR\"\r\n");
                m_folder.Write("order.xml.veu.cp",
                               kHeader + "\"1\";\"1\";\"D\";\"C\";\"" + largest + "\";\"EUR\"\r\n" +
                                   "\"2\";\"1\";\"D\";\"C\";\"0.01\";\"EUR\"\r\n");
            }
        };
        return script;
    }

    unsigned long Check()
    {
        m_session.SetFormatInfo("ISO20022", "pain.001", "");
        return m_session.CheckSignRules(m_order.c_str(), L"Ana Ruiz");
    }

    ComApartment m_apartment;
    std::string m_order = m_folder.Write("order.xml", "an order file");
    SignUtils m_session;
};

TEST_F(SessionAmounts, ConversionIsAskedForTheFormatsOfTheSession)
{
    const ScriptedEngine engine{Script()};
    m_session.SetFormatInfo("CFONB", "320", "");
    char errorText[256] = "before";

    EXPECT_EQ(m_session.ExecWorkFmt(m_order.c_str(), errorText), 1);
    EXPECT_THAT(engine.Calls(), Contains("FMTGetWorkDescr 7 CFONB 320 Work"));
    EXPECT_STREQ(errorText, "before");
}

TEST_F(SessionAmounts, ConversionThatFailsIsTexted)
{
    Script script;
    script.describe = E_FAIL;
    const ScriptedEngine engine(script);
    m_session.SetFormatInfo("ISO20022", "pain.001", "");
    char errorText[256] = "before";

    EXPECT_EQ(m_session.ExecWorkFmt(m_order.c_str(), errorText), 0);
    EXPECT_STREQ(errorText, "engine text");
}

TEST_F(SessionAmounts, AnalysisGivesTotalLargestOrderCountAndCurrency)
{
    const ScriptedEngine engine(Writing("350.50", "250.50"));
    m_session.SetFormatInfo("ISO20022", "pain.001", "");
    double total = -1.0;
    double largest = -1.0;
    int count = -1;
    char currency[4] = "XYZ";
    char errorText[256] = "before";

    EXPECT_EQ(
        m_session.GetMaxAmountFile(m_order.c_str(), total, largest, count, currency, errorText), 1);
    EXPECT_DOUBLE_EQ(total, 350.50);
    EXPECT_DOUBLE_EQ(largest, 250.50);
    EXPECT_EQ(count, 2);
    EXPECT_STREQ(currency, "EUR");
    EXPECT_STREQ(errorText, "before");
}

TEST_F(SessionAmounts, AnalysisThatFailsLeavesNoAmountOfAnEarlierFile)
{
    double total = 1.0;
    double largest = 1.0;
    int count = 1;
    char currency[4] = "XYZ";
    char errorText[256] = "";

    EXPECT_EQ(m_session.GetMaxAmountFile(nullptr, total, largest, count, currency, errorText), 0);
    EXPECT_EQ(total, 0.0);
    EXPECT_EQ(largest, 0.0);
    EXPECT_EQ(count, 0);
    EXPECT_STREQ(currency, "XYZ");
}

TEST_F(SessionAmounts, ConversionThroughTheCInterfaceIsAskedForTheFormatsOfTheSession)
{
    const ScriptedEngine engine{Script()};
    const CSession session;
    ASSERT_EQ(SignUtilsSetFormatInfo(session, "CFONB", "320", nullptr), SIGNUTILS_OK);

    EXPECT_EQ(SignUtilsExecWorkFmt(session, m_order.c_str()), SIGNUTILS_OK) << session.Error();
    EXPECT_THAT(engine.Calls(), Contains("FMTGetWorkDescr 7 CFONB 320 Work"));
}

TEST_F(SessionAmounts, AnalysisThroughTheCInterfaceFillsTheRecord)
{
    const ScriptedEngine engine(Writing("350.50", "250.50"));
    const CSession session;
    ASSERT_EQ(SignUtilsSetFormatInfo(session, "ISO20022", "pain.001", nullptr), SIGNUTILS_OK);
    SignUtilsAmounts amounts = {};
    amounts.size = sizeof amounts;

    ASSERT_EQ(SignUtilsGetMaxAmountFile(session, m_order.c_str(), &amounts), SIGNUTILS_OK)
        << session.Error();
    EXPECT_DOUBLE_EQ(amounts.totalAmount, 350.50);
    EXPECT_DOUBLE_EQ(amounts.maxOrderAmount, 250.50);
    EXPECT_EQ(amounts.orderCount, 2);
    EXPECT_STREQ(amounts.currency, "EUR");
    EXPECT_STREQ(amounts.errors, "");
}

TEST_F(SessionAmounts, TotalOfTheFileThatIsTheLimitPasses)
{
    const ScriptedEngine engine(Writing("1000.00", "999.99"));
    EXPECT_EQ(Check(), kSuccess);
}

TEST_F(SessionAmounts, TotalOfTheFileOneCentAboveTheLimitIsRefused)
{
    const ScriptedEngine engine(Writing("1000.01", "1000.00"));
    EXPECT_EQ(Check(), kRefused);
    const CheckOutcome& outcome = m_session.GetLastCheck();
    EXPECT_TRUE(outcome.ran);
    EXPECT_TRUE(outcome.amountsKnown);
    EXPECT_TRUE(outcome.amountsProblem.IsEmpty()) << outcome.amountsProblem.SafeGetString();
    EXPECT_DOUBLE_EQ(outcome.totalAmount, 1000.01);
    EXPECT_DOUBLE_EQ(outcome.maxOrderAmount, 1000.00);
    EXPECT_EQ(outcome.orderCount, 2);
    EXPECT_STREQ(outcome.reasonCode.SafeGetString(), "AM02");
}

TEST_F(SessionAmounts, WorkFilesThatAreNotThereMakeTheAmountsUnknown)
{
    const ScriptedEngine engine(Writing("", "", false));
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(Check(), kSuccess) << "the rules are judged all the same";
    const std::string told = ::testing::internal::GetCapturedStderr();
    EXPECT_THAT(told, EndsWith("order.xml.veu.err\n"));

    const CheckOutcome& outcome = m_session.GetLastCheck();
    EXPECT_TRUE(outcome.ran);
    EXPECT_FALSE(outcome.amountsKnown);
    EXPECT_STREQ(outcome.amountsProblem.SafeGetString(),
                 "The work files of the conversion could not be read");
    EXPECT_TRUE(outcome.reasonCode.IsEmpty()) << outcome.reasonCode.SafeGetString();
}

} // namespace
