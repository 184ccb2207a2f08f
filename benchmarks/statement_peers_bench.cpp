// What do other libraries make of a check's statements? SOCI and Poco from Debian's packages run
// them through the same driver manager, each row read whole, on three connections that stay open,
// as bare calls do. The whole check also decides, builds every statement anew and tests its
// connections for life. On the server that SIGNUTILS_TEST_DB names, see scripts/servers.

#include "benchmarks/check_bank.h"
#include "benchmarks/check_statements.h"
#include "benchmarks/raw_checks.h"
#include "benchmarks/rounds.h"
#include "benchmarks/sample_check.h"
#include "benchmarks/setting.h"
#include "database/idle_pool.h"

#include <Poco/Data/ODBC/Connector.h>
#include <Poco/Data/RecordSet.h>
#include <Poco/Data/Session.h>
#include <Poco/Data/Statement.h>
#include <soci/odbc/soci-odbc.h>
#include <soci/soci.h>

#include <array>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

constexpr std::size_t kRules = 2;
constexpr std::uint64_t kChecks = 60;

/// A statement of the check, and which of its three connections runs it.
struct Step
{
    std::u16string text;
    std::size_t connection;
    bool isQuery;
    bool isEvent;
};

std::vector<Step> StepsOf(const std::vector<std::u16string>& statements)
{
    std::vector<Step> steps;
    for (const std::u16string& each : statements)
    {
        const bool isQuery = each.starts_with(u"SELECT");
        const bool isEvent = benchmarks::IsEvent(each);
        steps.push_back({each, isQuery ? 0U : isEvent ? 2U : 1U, isQuery, isEvent});
    }
    return steps;
}

/// Runs the steps through `run`, which gives the rows of one.
template <typename Run>
std::uint64_t RunChecks(std::vector<Step>& steps, const Run& run)
{
    std::uint64_t rows = 0;
    for (std::uint64_t i = 0; i < kChecks; ++i)
    {
        for (Step& step : steps)
        {
            if (step.isEvent)
            {
                benchmarks::RenewKey(step.text);
            }
            rows += run(step, benchmarks::Ascii(step.text));
        }
    }
    return rows;
}

class SociChecks
{
public:
    SociChecks(const std::string& connexionString, std::vector<Step> steps)
        : m_steps(std::move(steps))
    {
        for (soci::session& each : m_sessions)
        {
            each.open(soci::odbc, connexionString);
        }
    }

    std::uint64_t Run()
    {
        return RunChecks(m_steps, [this](const Step& step, const std::string& text)
                         { return RunOne(m_sessions[step.connection], step.isQuery, text); });
    }

private:
    static std::uint64_t RunOne(soci::session& session, bool isQuery, const std::string& text)
    {
        if (!isQuery)
        {
            session << text;
            return 0;
        }
        const soci::rowset<soci::row> found = session.prepare << text;
        return static_cast<std::uint64_t>(std::distance(found.begin(), found.end()));
    }

    std::array<soci::session, 3> m_sessions;
    std::vector<Step> m_steps;
};

class PocoChecks
{
public:
    PocoChecks(const std::string& connexionString, std::vector<Step> steps)
        : m_steps(std::move(steps))
    {
        for (std::size_t i = 0; i < 3; ++i)
        {
            m_sessions.emplace_back(Poco::Data::ODBC::Connector::KEY, connexionString);
        }
    }

    std::uint64_t Run()
    {
        return RunChecks(m_steps, [this](const Step& step, const std::string& text)
                         { return RunOne(m_sessions[step.connection], step.isQuery, text); });
    }

private:
    static std::uint64_t RunOne(Poco::Data::Session& session, bool isQuery, const std::string& text)
    {
        Poco::Data::Statement statement(session);
        statement << text;
        statement.execute();
        return isQuery ? Poco::Data::RecordSet(statement).rowCount() : 0U;
    }

    std::vector<Poco::Data::Session> m_sessions;
    std::vector<Step> m_steps;
};

std::uint64_t RowsOf(benchmarks::RawChecks& raw)
{
    std::uint64_t rows = 0;
    for (std::uint64_t i = 0; i < kChecks; ++i)
    {
        rows += raw.RunOnce();
    }
    return rows;
}

std::uint64_t WholeChecks(const std::string& connexionString)
{
    std::uint64_t verdicts = 0;
    for (std::uint64_t i = 0; i < kChecks; ++i)
    {
        verdicts += benchmarks::SampleCheck(connexionString);
    }
    return verdicts;
}

void Compare(const std::string& connexionString)
{
    const std::vector<std::u16string> statements = benchmarks::StatementsOfACheck(kRules);
    benchmarks::RawChecks raw(connexionString, statements);
    SociChecks soci(connexionString, StepsOf(statements));
    PocoChecks poco(connexionString, StepsOf(statements));
    const std::uint64_t rows = 3 * kRules * kChecks;
    if (RowsOf(raw) != rows || soci.Run() != rows || poco.Run() != rows ||
        WholeChecks(connexionString) != kChecks)
    {
        throw std::runtime_error("the contenders do not find the same");
    }
    std::printf("\n%zu rules, %zu statements a check, %llu checks a round\n", kRules,
                statements.size(), static_cast<unsigned long long>(kChecks));
    benchmarks::TimeEachInTurn(
        {{"bare calls, connections open", [&] { return RowsOf(raw); }},
         {"whole check, pool warm", [&] { return WholeChecks(connexionString); }},
         {"SOCI, connections open", [&] { return soci.Run(); }},
         {"Poco, connections open", [&] { return poco.Run(); }}},
        kChecks);
}

int Run()
{
    benchmarks::PrintSetting("What do other libraries make of a check's statements?");
    const benchmarks::DataFolder folder("statement-peers-bench", 16U * 1024 * 1024);
    setenv("SIGNUTILS_SPOOL", folder.Path("spool").c_str(), 1);
    const char* const server = std::getenv("SIGNUTILS_TEST_DB");
    if (server == nullptr)
    {
        throw std::runtime_error(
            "no server: name one in SIGNUTILS_TEST_DB or run it by scripts/bench");
    }
    const std::string connexionString = server;
    benchmarks::MakeBank(connexionString, kRules, 1000);
    Poco::Data::ODBC::Connector::registerConnector();
    Compare(connexionString);
    database::EmptyIdlePool();
    return 0;
}

} // namespace

int main()
{
    return benchmarks::RunGuarded(Run);
}
