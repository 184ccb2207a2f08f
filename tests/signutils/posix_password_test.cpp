// Where the password of a connection string goes when a check fails on its database: into no trace,
// no event, no outcome. The driver repeats the connection string in each of its messages.

#include "tests/signutils/session_fixture.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

namespace testing_support
{
namespace
{

namespace fs = std::filesystem;

using testing::HasSubstr;
using testing::Not;

class Password : public SessionTest
{
protected:
    /// Checks on a database behind the echoing driver; gives the trace and all files left.
    std::string EverythingLeftBy(const std::string& connection)
    {
        TraceFile trace;
        {
            SignUtils session(trace.Handle(), "");
            Prepare(session);
            session.SetPSRWarning("REPORT");
            session.SetConnexionString(connection.c_str());
            EXPECT_NE(session.CheckSignRules("order.xml", L"Ana Ruiz"), kSuccess);
            const CheckOutcome& outcome = session.GetLastCheck();
            m_outcome = std::string(outcome.problem.SafeGetString()) + "\n" +
                        outcome.reportProblem.SafeGetString() + "\n" +
                        session.GetExtraInfo().SafeGetString() + "\n" +
                        session.GetPSRWarning().SafeGetString();
        }
        std::string all = trace.Close();
        for (const auto& entry : fs::recursive_directory_iterator(m_folder.Path()))
        {
            all += "\n" + entry.path().string() + "\n";
            if (entry.is_regular_file() && entry.path().extension() != ".db")
            {
                all += ReadWholeFile(entry.path().string());
            }
        }
        return all + m_outcome;
    }

    std::string m_outcome;
};

TEST_F(Password, StaysOutOfTraceEventReportAndOutcomeWhenTheConnectionIsRefused)
{
    const std::string left =
        EverythingLeftBy("DRIVER=" SIGNUTILS_ECHO_DRIVER ";UID=bank;PWD={senti;nel}");

    EXPECT_THAT(left, HasSubstr("Exception: [28000] no luck with"));
    EXPECT_THAT(left, HasSubstr("PWD={***}"));
    EXPECT_THAT(left, HasSubstr(".jsonl")) << "the event was spooled";
    EXPECT_THAT(m_outcome, HasSubstr("no luck with"));
    EXPECT_THAT(left, Not(HasSubstr("senti")));
}

TEST_F(Password, StaysOutOfTraceEventReportAndOutcomeWhenStatementsAreRefused)
{
    const std::string left = EverythingLeftBy("DRIVER=" SIGNUTILS_ECHO_DRIVER
                                              ";ECHO=CONNECT;UID=bank;Password=sentinel");

    EXPECT_THAT(left, HasSubstr("no luck with"));
    EXPECT_THAT(left, Not(HasSubstr("sentinel")));
}

TEST_F(Password, StaysOutOfEverythingWhenTheDriverIsNotThere)
{
    const std::string left = EverythingLeftBy("DRIVER=/no/such/driver.so;UID=bank;PWD=sentinel");

    EXPECT_THAT(left, HasSubstr("Exception: [01000]"));
    EXPECT_THAT(left, Not(HasSubstr("sentinel")));
}

TEST_F(Password, StaysOutOfEverythingWhenTheConnectionStringIsBroken)
{
    const std::string left = EverythingLeftBy("DRIVER=X;PWD=senti;nel");

    EXPECT_THAT(left, HasSubstr("a value with a semicolon must stand in braces"));
    EXPECT_THAT(left, Not(HasSubstr("senti")));
    EXPECT_THAT(left, Not(HasSubstr(";nel")));
}

} // namespace
} // namespace testing_support
