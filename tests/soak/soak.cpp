// Whole checks without end: several threads judge the sample bank's orders, each check on a session
// of its own; after every round memory, open files and the rows in the database are compared with
// what they must be.

#include "database/cdatabase.h"
#include "database/crecordset.h"
#include "database/guard_database.h"
#include "schema/installer.h"
#include "signutils/signutils.h"
#include "tests/soak/orders.h"
#include "tests/soak/soak_state.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace
{

constexpr int kThreads = 4;
constexpr int kChecksARound = 50;     // of each thread
constexpr int kRoundsBeforeBase = 20; // caches and pools fill first
constexpr std::int64_t kGrowthKib = 16 * 1024;

struct Tally
{
    std::int64_t checks = 0;
    std::int64_t rows = 0;
    std::int64_t events = 0;
    std::string problem;
};

void JudgeOne(const std::string& connexion, const soak::Order& order, Tally& tally)
{
    SignUtils session(nullptr, nullptr);
    soak::SetUp(session, connexion, order, false);
    const unsigned long verdict = session.CheckSignRules("/soak/order.xml", order.signers);
    const CheckOutcome& outcome = session.GetLastCheck();
    if (verdict != order.verdict || outcome.rowsWritten != order.rows ||
        outcome.journal != JournalState::Written)
    {
        tally.problem = "verdict " + std::to_string(verdict) + " instead of " +
                        std::to_string(order.verdict) + ", rows " +
                        std::to_string(outcome.rowsWritten) + ": " +
                        outcome.problem.SafeGetString();
    }
    ++tally.checks;
    tally.rows += order.rows;
    ++tally.events;
}

Tally RunRound(const std::string& connexion)
{
    std::vector<Tally> tallies(kThreads);
    std::vector<std::thread> threads;
    for (Tally& tally : tallies)
    {
        threads.emplace_back(
            [&connexion, &tally]
            {
                for (int i = 0; i < kChecksARound && tally.problem.empty(); ++i)
                {
                    JudgeOne(connexion, soak::OrderAt(static_cast<std::size_t>(i)), tally);
                }
            });
    }
    Tally all;
    for (std::size_t i = 0; i < threads.size(); ++i)
    {
        threads[i].join();
        all.checks += tallies[i].checks;
        all.rows += tallies[i].rows;
        all.events += tallies[i].events;
        all.problem += tallies[i].problem;
    }
    return all;
}

std::int64_t CountRows(CDatabase& database, const wchar_t* statement)
{
    CRecordset rows(database);
    rows.OpenW(CRecordset::kForwardOnly, statement, 0);
    CTString count;
    rows.GetFieldValue("N", count);
    return std::atoll(count.SafeGetString());
}

void Require(bool holds, const std::string& what)
{
    if (!holds)
    {
        throw std::runtime_error(what);
    }
}

void CompareDatabase(CDatabase& database, const soak::State& state)
{
    const std::int64_t rows = CountRows(database, L"SELECT COUNT(*) AS N FROM HST_SIGNRULES");
    const std::int64_t events = CountRows(database, L"SELECT COUNT(*) AS N FROM EVT_JOURNAL");
    Require(rows == state.rows, "history holds " + std::to_string(rows) + " rows instead of " +
                                    std::to_string(state.rows));
    Require(events == state.events, "journal holds " + std::to_string(events) +
                                        " events instead of " + std::to_string(state.events));
}

void Prepare(const std::string& connexion, const soak::State& state)
{
    CDatabase database;
    database.OpenEx(connexion.c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    schema::Install(database);
    schema::InstallSample(database);
    if (state.checks == 0)
    {
        database.ExecuteSQLW(L"DELETE FROM HST_SIGNRULES");
        database.ExecuteSQLW(L"DELETE FROM EVT_JOURNAL");
    }
}

void Run(const std::string& folder, std::int64_t goalSeconds)
{
    const std::string connexion = "Driver=SQLite3;Database=" + folder + "/bank.db;Timeout=60000";
    const std::string stateFile = folder + "/state.json";
    soak::State state = soak::LoadState(stateFile);
    Prepare(connexion, state);
    if (state.checks > 0)
    {
        // A kill between a round and its state leaves rows that no state knows of.
        CDatabase database;
        database.OpenEx(connexion.c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
        state.rows = CountRows(database, L"SELECT COUNT(*) AS N FROM HST_SIGNRULES");
        state.events = CountRows(database, L"SELECT COUNT(*) AS N FROM EVT_JOURNAL");
        std::printf("going on after %lld seconds and %lld checks\n",
                    static_cast<long long>(state.milliseconds / 1000),
                    static_cast<long long>(state.checks));
    }
    soak::Footprint base;
    for (int round = 1; state.milliseconds < goalSeconds * 1000; ++round)
    {
        const auto started = std::chrono::steady_clock::now();
        const Tally tally = RunRound(connexion);
        Require(tally.problem.empty(), tally.problem);
        state.checks += tally.checks;
        state.rows += tally.rows;
        state.events += tally.events;
        {
            CDatabase database;
            database.OpenEx(connexion.c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
            CompareDatabase(database, state);
        }
        const auto now = soak::MeasureFootprint();
        base = round <= kRoundsBeforeBase ? now : base;
        Require(now.residentKib <= base.residentKib + kGrowthKib,
                "memory grew from " + std::to_string(base.residentKib) + " to " +
                    std::to_string(now.residentKib) + " KiB");
        Require(now.openFiles <= base.openFiles, "open files grew from " +
                                                     std::to_string(base.openFiles) + " to " +
                                                     std::to_string(now.openFiles));
        state.milliseconds += std::chrono::duration_cast<std::chrono::milliseconds>(
                                  std::chrono::steady_clock::now() - started)
                                  .count();
        soak::SaveState(stateFile, state);
        if (round % 100 == 0)
        {
            std::printf("%lld s, %lld checks, %lld KiB, %lld open files\n",
                        static_cast<long long>(state.milliseconds / 1000),
                        static_cast<long long>(state.checks),
                        static_cast<long long>(now.residentKib),
                        static_cast<long long>(now.openFiles));
            std::fflush(stdout);
        }
    }
    std::printf("done: %lld s, %lld checks, %lld rows, %lld events, nothing lost or doubled\n",
                static_cast<long long>(state.milliseconds / 1000),
                static_cast<long long>(state.checks), static_cast<long long>(state.rows),
                static_cast<long long>(state.events));
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
    {
        std::fprintf(stderr, "usage: signutils_soak FOLDER SECONDS\n");
        return 64;
    }
    int result = 1;
    try
    {
        database::GuardDatabase(
            [&]
            {
                Run(argv[1], std::atoll(argv[2]));
                result = 0;
            },
            [](CDBException& raised) { std::fprintf(stderr, "soak: %s\n", raised.GetText()); },
            []
            {
                try
                {
                    throw;
                }
                catch (const std::exception& problem)
                {
                    std::fprintf(stderr, "soak: %s\n", problem.what());
                }
            });
    }
    catch (...)
    {
        std::fprintf(stderr, "soak: unknown error\n");
    }
    return result;
}
