#include "signutils/measures.h"

#include "containers/shared_ref_impl.h"
#include "signutils/check_counting.h"
#include "support/measures.h"
#include "tests/amounts/scripted_engine.h"
#include "tests/signutils/session_fixture.h"
#include "tests/testing/exposition_reader.h"
#include "tests/testing/failing_allocations.h"

#include <gmock/gmock.h>

#include <new>
#include <string>
#include <thread>
#include <vector>

// What a process tells of its checks. Its measures stay on once they are, so that each test begins
// with its own and puts back what was there.

using amounts_tests::ComApartment;
using amounts_tests::Script;
using amounts_tests::ScriptedEngine;
using namespace testing_support;
using ::testing::AllOf;
using ::testing::HasSubstr;

namespace
{

constexpr const char* kChecks = "signutils_checks_total";
constexpr const char* kShortfalls = "signutils_shortfalls_total";

class SessionMeasures : public SessionTest
{
protected:
    SessionMeasures() { support::g_measures = &m_measures; }
    ~SessionMeasures() override { support::g_measures = m_before; }

    ExpositionReader Written()
    {
        TSimpleString problem("of before");
        EXPECT_TRUE(signutils::WriteMeasures(m_file.c_str(), problem)) << problem.SafeGetString();
        EXPECT_TRUE(problem.IsEmpty());
        return ExpositionReader(ReadWholeFile(m_file));
    }

    double Shortfalls(const char* kind) { return Written().Sum(kShortfalls, {{"kind", kind}}); }

    void Check(const wchar_t* signers = L"Ana Ruiz", double total = 100.00)
    {
        SignUtils session;
        Prepare(session);
        session.SetAmountInfo(total, total, "EUR");
        session.CheckSignRules("order.xml", signers);
    }

    support::Measures* m_before = support::g_measures;
    support::Measures m_measures;
    std::string m_file = m_folder.Path("orders.prom");
};

TEST_F(SessionMeasures, ChecksAreCountedByWhatBecameOfThem)
{
    Check();
    Check();
    Check(L"Ana Ruiz", 1000.01);
    Check(L"Nobody");
    SignUtils unconnected;
    Prepare(unconnected);
    unconnected.SetConnexionString("");
    unconnected.CheckSignRules("order.xml", L"Ana Ruiz");

    const ExpositionReader read = Written();
    const auto count = [&read](const char* verdict, const char* reason)
    {
        return read.Sum(kChecks, {{"verdict", verdict},
                                  {"reason", reason},
                                  {"service", "SERVICE1"},
                                  {"source", "orders"}});
    };
    EXPECT_EQ(count("success", "none"), 2.0);
    EXPECT_EQ(count("refused", "AM02"), 1.0);
    EXPECT_EQ(count("no-rule", "NARR"), 1.0);
    EXPECT_EQ(count("not-run", "none"), 1.0);
    EXPECT_EQ(read.Sum(kChecks), 5.0);
    EXPECT_EQ(read.Sum(kShortfalls), 0.0);
}

TEST_F(SessionMeasures, EveryCheckAndEveryStatementIsTimed)
{
    Check();
    Check();
    const ExpositionReader read = Written();
    EXPECT_EQ(read.Sum("signutils_check_seconds_count"), 2.0);
    EXPECT_GT(read.Sum("signutils_check_seconds_sum"), 0.0);
    EXPECT_EQ(read.Sum("signutils_conversion_seconds_count"), 0.0);
    // Rules, look-up, history row and event at least.
    EXPECT_GE(read.Sum("signutils_statement_seconds_count"), 8.0);
    EXPECT_LE(read.Sum("signutils_statement_seconds_sum"), read.Sum("signutils_check_seconds_sum"));
}

TEST_F(SessionMeasures, CheckOfTheRulesAloneIsCountedToo)
{
    SignUtils session;
    Prepare(session);
    TSimpleString code;
    TSimpleStringW text;
    session.CheckSignRulesFor(code, text, L"Ana Ruiz", "order.xml", 1000.01, 1.0, "EUR");
    EXPECT_EQ(Written().Sum(kChecks, {{"verdict", "refused"}, {"reason", "AM02"}}), 1.0);
}

TEST_F(SessionMeasures, ConversionsAreTimedOnTheirOwnAndInsideOfAChecks)
{
    const ComApartment apartment;
    const ScriptedEngine engine{Script()};
    const std::string order = m_folder.Write("order.xml", "an order file");
    SignUtils session;
    Prepare(session);
    session.SetFormatInfo("ISO20022", "pain.001", "");
    char errorText[256] = "";
    double total = 0.0;
    double largest = 0.0;
    int count = 0;
    session.ExecWorkFmt(order.c_str(), errorText);
    session.GetMaxAmountFile(order.c_str(), total, largest, count, nullptr, errorText);
    EXPECT_EQ(Written().Sum("signutils_conversion_seconds_count"), 2.0);
    session.CheckSignRules(order.c_str(), L"Ana Ruiz");
    EXPECT_EQ(Written().Sum("signutils_conversion_seconds_count"), 3.0);
    EXPECT_EQ(Written().Sum("signutils_check_seconds_count"), 1.0);
}

TEST_F(SessionMeasures, ShortfallsAreCounted)
{
    SignUtils session;
    Prepare(session);
    session.SetFormatInfo("", "", "");
    session.CheckSignRules("order.xml", L"Ana Ruiz");
    EXPECT_EQ(Shortfalls("amounts-unknown"), 1.0);

    m_database.Execute(L"DROP TABLE HST_SIGNRULES");
    Check();
    EXPECT_EQ(Shortfalls("rows-missing"), 1.0);

    m_database.Execute(L"DROP TABLE EVT_JOURNAL");
    Check();
    EXPECT_EQ(Shortfalls("event-spooled"), 1.0);
    EXPECT_EQ(Shortfalls("event-lost"), 0.0);
    EXPECT_EQ(Shortfalls("report-not-handed-on"), 0.0);
}

TEST_F(SessionMeasures, LostEventsAndReportsAreCounted)
{
    m_database.Execute(L"DROP TABLE EVT_JOURNAL");
    const std::string file = m_folder.Write("no folder", "x");
    const ScopedEnvironment spool("SIGNUTILS_SPOOL", file.c_str());
    const ScopedEnvironment store("SIGNUTILS_HANDOFF", file.c_str());
    SignUtils session;
    Prepare(session);
    session.SetPSRWarning("STATUS");
    session.SetAmountInfo(1000.01, 1.0, "EUR");
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);
    EXPECT_EQ(session.GetLastCheck().report, ReportState::NotHandedOn);
    EXPECT_EQ(Shortfalls("event-lost"), 1.0);
    EXPECT_EQ(Shortfalls("report-not-handed-on"), 1.0);
}

TEST_F(SessionMeasures, CheckThatAnExceptionEndsIsCountedOnce)
{
    SignUtils session;
    Prepare(session);
    {
        const FailAllAllocations fault;
        EXPECT_THROW(session.CheckSignRules("order.xml", L"Ana Ruiz"), std::bad_alloc);
    }
    const ExpositionReader read = Written();
    EXPECT_EQ(read.Sum(kChecks, {{"verdict", "not-run"}}), 1.0);
    EXPECT_EQ(read.Sum(kChecks), 1.0);
    EXPECT_EQ(read.Sum("signutils_check_seconds_count"), 1.0);
}

TEST(CheckCounting, IncompleteRulesAndLookupsCountOnlyWhereSomethingWasRead)
{
    support::CheckCounts counts;
    CheckOutcome outcome;
    outcome.amountsKnown = true;
    signutils::CountCheck(outcome, "CCT", counts);
    const auto none = counts.Read().shortfalls;
    EXPECT_THAT(none, ::testing::Each(0U));
    outcome.ran = true;
    signutils::CountCheck(outcome, "CCT", counts);
    const auto some = counts.Read().shortfalls;
    EXPECT_EQ(some[static_cast<std::size_t>(support::Shortfall::RulesIncomplete)], 1U);
    EXPECT_EQ(some[static_cast<std::size_t>(support::Shortfall::LookupsIncomplete)], 1U);
}

TEST_F(SessionMeasures, HostileServiceStaysOneLabel)
{
    SignUtils session;
    Prepare(session);
    session.SetContractInfo(1, 9, "PARTNER1", "\"}\n\\\xC9", "CLIENT1", 1, "");
    session.CheckSignRules("order.xml", L"Ana Ruiz");
    EXPECT_EQ(Written().Sum(kChecks, {{"service", "\"}\n\\\xC3\x89"}}), 1.0);
}

TEST_F(SessionMeasures, SumsOfSessionsInSeveralThreadsAreExact)
{
    constexpr int kThreads = 4;
    constexpr int kEach = 5;
    Check(); // the driver manager's first connection races inside of it
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
    {
        threads.emplace_back(
            [this]
            {
                for (int number = 0; number < kEach; ++number)
                {
                    Check();
                    Check(L"Ana Ruiz", 1000.01);
                }
            });
    }
    for (std::thread& each : threads)
    {
        each.join();
    }
    const ExpositionReader read = Written();
    EXPECT_EQ(read.Sum(kChecks, {{"verdict", "success"}}), kThreads * kEach + 1);
    EXPECT_EQ(read.Sum(kChecks, {{"verdict", "refused"}}), kThreads * kEach);
    EXPECT_EQ(read.Sum("signutils_check_seconds_count"), 2 * kThreads * kEach + 1);
}

TEST_F(SessionMeasures, SpoolDepthIsThatOfTheMoment)
{
    EXPECT_EQ(Written().Sum("signutils_spool_events"), 0.0);
    m_database.Execute(L"ALTER TABLE EVT_JOURNAL RENAME TO EVT_AWAY");
    Check();
    Check();
    EXPECT_EQ(Written().Sum("signutils_spool_events"), 2.0);
    m_database.Execute(L"ALTER TABLE EVT_AWAY RENAME TO EVT_JOURNAL");
    Check();
    EXPECT_EQ(Written().Sum("signutils_spool_events"), 0.0);
    EXPECT_EQ(Written().Sum("signutils_spool_unreadable_files"), 0.0);
}

TEST_F(SessionMeasures, SpoolThatCannotBeReadIsToldAndTheRestIsWritten)
{
    std::filesystem::create_directories(SpoolFolder() + "/events-x.append.lock");
    m_folder.Write("spool/events-x.jsonl", "{}\n");
    Check();
    const ExpositionReader read = Written();
    EXPECT_EQ(read.Sum("signutils_spool_unreadable_files"), 1.0);
    EXPECT_EQ(read.Sum(kChecks), 1.0);
}

TEST_F(SessionMeasures, VersionIsTold)
{
    EXPECT_EQ(Written().Sum("signutils_build_info", {{"version", SIGNUTILS_VERSION}}), 1.0);
}

TEST_F(SessionMeasures, SourceIsTheNameOfTheFile)
{
    for (const auto& [name, source] : {std::pair{"a.b.prom", "a.b"}, std::pair{"plain", "plain"}})
    {
        m_file = m_folder.Path(name);
        EXPECT_EQ(Written().Count("signutils_build_info", {{"source", source}}), 1U) << name;
    }
}

TEST_F(SessionMeasures, FileThatCannotBeWrittenIsToldWithItsReasonAndNeverChangesAVerdict)
{
    const std::string away = m_folder.Path("away/orders.prom");
    TSimpleString problem;
    EXPECT_FALSE(signutils::WriteMeasures(away.c_str(), problem));
    EXPECT_THAT(problem.SafeGetString(),
                AllOf(HasSubstr("the measures cannot be written to "), HasSubstr("orders.prom"),
                      HasSubstr("path not found"), HasSubstr("Give a file in a folder")));
    EXPECT_FALSE(signutils::WriteMeasures(nullptr, problem));
    EXPECT_THAT(problem.SafeGetString(), HasSubstr("the measures cannot be written to \"\""));
    Check();
    EXPECT_EQ(Written().Sum(kChecks, {{"verdict", "success"}}), 1.0);
}

TEST_F(SessionMeasures, WhatElseLiesThereStaysAsItIs)
{
    const std::string order = m_folder.Write("order.xml", "<Document>an order</Document>");
    TSimpleString problem;
    for (const std::string& path : {order, m_folder.Path()})
    {
        EXPECT_FALSE(signutils::WriteMeasures(path.c_str(), problem)) << path;
        EXPECT_THAT(problem.SafeGetString(),
                    AllOf(HasSubstr("the measures cannot be written to "), HasSubstr(" lies there"),
                          HasSubstr("Name a new file")));
    }
    EXPECT_EQ(ReadWholeFile(order), "<Document>an order</Document>");
}

TEST_F(SessionMeasures, EmptyFileAndOneOfMeasuresAreReplaced)
{
    m_folder.Write("orders.prom", "");
    Written();
    Check();
    EXPECT_EQ(Written().Sum(kChecks), 1.0);
}

/// Without measures of its own.
class UngatheredMeasures : public SessionTest
{
protected:
    UngatheredMeasures() { support::g_measures = nullptr; }
    ~UngatheredMeasures() override { support::g_measures = m_before; }

    support::Measures* m_before = support::g_measures;
};

TEST_F(UngatheredMeasures, AreNotWritten)
{
    SignUtils session;
    Prepare(session);
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kSuccess);
    TSimpleString problem;
    EXPECT_FALSE(signutils::WriteMeasures(m_folder.Path("orders.prom").c_str(), problem));
    EXPECT_STREQ(problem.SafeGetString(),
                 "no measures are gathered. Start them before they are written.");
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path("orders.prom")));
}

TEST_F(UngatheredMeasures, AreCountedFromTheStartOnAndNotBegunAnewByAnother)
{
    const std::string file = m_folder.Path("orders.prom");
    TSimpleString problem;
    SignUtils session;
    Prepare(session);
    session.CheckSignRules("order.xml", L"Ana Ruiz");
    signutils::StartMeasures();
    ASSERT_TRUE(signutils::WriteMeasures(file.c_str(), problem));
    const double before = ExpositionReader(ReadWholeFile(file)).Sum(kChecks);
    session.CheckSignRules("order.xml", L"Ana Ruiz");
    signutils::StartMeasures();
    ASSERT_TRUE(signutils::WriteMeasures(file.c_str(), problem));
    EXPECT_EQ(ExpositionReader(ReadWholeFile(file)).Sum(kChecks), before + 1.0);
}

} // namespace
