// What do connections cost a check, and what do sessions beside each other? Each check is one of a
// new object. On the server that SIGNUTILS_TEST_DB names (PostgreSQL, see scripts/servers), beside
// bare calls that run the same statements on connections that stay open, also with several threads
// and with the rate of pgbench printed behind, where it is installed; else on SQLite, pool against
// no pool alone. Processor time is the client's. Where the driver manager is told to pool
// (Pooling=Yes in the odbcinst.ini of the folder that ODBCSYSINI names), the line without the
// library's pool is the manager's own.

#include "benchmarks/check_bank.h"
#include "benchmarks/check_statements.h"
#include "benchmarks/pgbench.h"
#include "benchmarks/raw_checks.h"
#include "benchmarks/rounds.h"
#include "benchmarks/sample_check.h"
#include "benchmarks/setting.h"
#include "database/idle_pool.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace
{

using benchmarks::Contender;
using benchmarks::RawChecks;

constexpr std::size_t kRules = 2;
constexpr std::uint64_t kChecks = 60;
constexpr std::uint64_t kChecksOfSessions = 240;

std::uint64_t Check(const std::string& connexionString)
{
    return benchmarks::SampleCheck(connexionString);
}

std::uint64_t ChecksOf(const std::string& connexionString, std::uint64_t checks)
{
    std::uint64_t verdicts = 0;
    for (std::uint64_t i = 0; i < checks; ++i)
    {
        verdicts += Check(connexionString);
    }
    return verdicts;
}

std::uint64_t ChecksWithoutPool(const std::string& connexionString, std::uint64_t checks)
{
    setenv("SIGNUTILS_POOL", "0", 1);
    const std::uint64_t verdicts = ChecksOf(connexionString, checks);
    unsetenv("SIGNUTILS_POOL");
    return verdicts;
}

std::uint64_t RowsOf(RawChecks& raw, std::uint64_t checks)
{
    std::uint64_t rows = 0;
    for (std::uint64_t i = 0; i < checks; ++i)
    {
        rows += raw.RunOnce();
    }
    return rows;
}

Contender WithoutPool(const std::string& connexionString)
{
    return {"new object, pool off",
            [&connexionString] { return ChecksWithoutPool(connexionString, kChecks); }};
}

Contender WithPool(const std::string& connexionString)
{
    return {"new object, pool warm",
            [&connexionString] { return ChecksOf(connexionString, kChecks); }};
}

/// Runs the same work in as many threads; what they found in all.
template <typename Work>
std::uint64_t InThreads(std::size_t count, const Work& work)
{
    std::vector<std::uint64_t> found(count);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < count; ++i)
    {
        threads.emplace_back([&, i] { found[i] = work(i); });
    }
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < count; ++i)
    {
        threads[i].join();
        sum += found[i];
    }
    return sum;
}

void CompareSessions(const std::string& connexionString,
                     const std::vector<std::u16string>& statements, std::size_t sessions)
{
    std::vector<std::unique_ptr<RawChecks>> raw;
    for (std::size_t i = 0; i < sessions; ++i)
    {
        raw.push_back(std::make_unique<RawChecks>(connexionString, statements));
    }
    const std::uint64_t each = kChecksOfSessions / sessions;
    std::printf("\n%zu sessions, %llu checks a round\n", sessions,
                static_cast<unsigned long long>(each * sessions));
    benchmarks::TimeEachInTurn(
        {{"bare calls in threads", [&]
          { return InThreads(sessions, [&](std::size_t i) { return RowsOf(*raw[i], each); }); }},
         {"checks in threads",
          [&] {
              return InThreads(sessions,
                               [&](std::size_t) { return ChecksOf(connexionString, each); });
          }}},
        each * sessions);
    benchmarks::PrintPgbench(connexionString, statements, sessions, each);
}

void CompareOnServer(const std::string& connexionString)
{
    const std::vector<std::u16string> statements = benchmarks::StatementsOfACheck(kRules);
    RawChecks raw(connexionString, statements);
    if (raw.RunOnce() != 3 * kRules || Check(connexionString) != 1)
    {
        throw std::runtime_error("the contenders do not find the same");
    }
    std::printf("\n%zu rules, %zu statements a check, %llu checks a round\n", kRules,
                statements.size(), static_cast<unsigned long long>(kChecks));
    benchmarks::TimeEachInTurn(
        {{"bare calls, connections open", [&] { return RowsOf(raw, kChecks); }},
         WithPool(connexionString),
         WithoutPool(connexionString)},
        kChecks);
    for (const std::size_t sessions : {1U, 2U, 8U})
    {
        CompareSessions(connexionString, statements, sessions);
    }
}

void CompareOnSqlite(const std::string& connexionString)
{
    std::printf("\nSQLite, %zu rules, %llu checks a round\n", kRules,
                static_cast<unsigned long long>(kChecks));
    benchmarks::TimeEachInTurn({WithPool(connexionString), WithoutPool(connexionString)}, kChecks);
}

int Run()
{
    benchmarks::PrintSetting("What do connections cost a check?");
    const benchmarks::DataFolder folder("connections-bench", 16U * 1024 * 1024);
    setenv("SIGNUTILS_SPOOL", folder.Path("spool").c_str(), 1);
    const char* const server = std::getenv("SIGNUTILS_TEST_DB");
    const std::string connexionString =
        server != nullptr ? server
                          : "Driver=SQLite3;SyncPragma=OFF;Database=" + folder.Path("bank.db");
    benchmarks::MakeBank(connexionString, kRules, 1000);
    if (server != nullptr)
    {
        CompareOnServer(connexionString);
    }
    else
    {
        CompareOnSqlite(connexionString);
    }
    database::EmptyIdlePool();
    return 0;
}

} // namespace

int main()
{
    return benchmarks::RunGuarded(Run);
}
