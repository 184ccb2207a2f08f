#include "services/cevents.h"
#include "tests/testing/platform.h"
#include "tests/testing/test_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace
{

using testing_support::ReadWholeFile;
using testing_support::RunProgram;
using testing_support::ScopedEnvironment;
using testing_support::TemporaryFolder;
using testing_support::TestDatabase;

/// Runs the worker program in as many processes at once as there are names.
void RunWorkers(const std::string& task, const std::string& place,
                const std::vector<std::string>& names, int count)
{
    std::vector<std::thread> threads;
    for (const std::string& name : names)
    {
        threads.emplace_back(
            [=]
            {
                const TemporaryFolder folder;
                EXPECT_EQ(RunProgram(SIGNUTILS_SERVICES_WORKER,
                                     {task, place, name, std::to_string(count)},
                                     folder.Path("output"), folder.Path("errors")),
                          0)
                    << ReadWholeFile(folder.Path("errors"));
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
}

TEST(ServicesInProcesses, IdentifiersAreNeverTheSame)
{
    const TemporaryFolder folder;
    const std::string report = folder.Write("report.psr", "the report");
    const std::string store = folder.Path("store");
    RunWorkers("files", store, {report, report, report}, 20);

    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(store + "/STATUS/P"))
    {
        names.insert(entry.path().filename().string());
    }
    EXPECT_EQ(names.size(), 60U);
    EXPECT_TRUE(names.contains("1.psr"));
    EXPECT_TRUE(names.contains("60.psr"));
}

TEST(ServicesInProcesses, SpooledEventsAreDeliveredOnceByWhoeverComes)
{
    TestDatabase database;
    const TemporaryFolder folder;
    const std::string spool = folder.Path("spool");
    const ScopedEnvironment variable("SIGNUTILS_SPOOL", spool.c_str());
    const std::string& connection = database.ConnexionString();

    database.Execute(L"ALTER TABLE EVT_JOURNAL RENAME TO EVT_AWAY");
    RunWorkers("events", connection, {"early1", "early2"}, 10);
    EXPECT_FALSE(std::filesystem::is_empty(spool));

    database.Execute(L"ALTER TABLE EVT_AWAY RENAME TO EVT_JOURNAL");
    RunWorkers("events", connection, {"late1", "late2", "late3"}, 10);

    EXPECT_EQ(database.Query(L"SELECT COUNT(*), COUNT(DISTINCT TEXT) FROM EVT_JOURNAL"),
              (std::vector<testing_support::Row>{{L"50", L"50"}}));
    // Each client's events keep their order.
    for (const wchar_t* const name : {L"early1", L"early2", L"late1", L"late2", L"late3"})
    {
        const auto rows = database.Query(L"SELECT TEXT FROM EVT_JOURNAL WHERE TEXT LIKE '" +
                                         std::wstring(name) + L"/%' ORDER BY EVENTID");
        ASSERT_EQ(rows.size(), 10U);
        for (std::size_t row = 0; row < rows.size(); ++row)
        {
            EXPECT_EQ(rows[row][0], name + (L"/" + std::to_wstring(row)));
        }
    }
}

} // namespace
