#pragma once

#include "services/cevents.h"
#include "tests/testing/test_database.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace testing_support
{

/// A database of the test's own and a spool folder that holds nothing yet.
class JournalFixture : public testing::Test
{
protected:
    /// A client that has connected to the test's database.
    struct Client
    {
        explicit Client(const char* connection) : events("RULSGN", status)
        {
            connected = events.Connect(connection);
        }
        services::EventOutcome Write(const wchar_t* text)
        {
            return events.WriteEventsWithPj(0, nullptr, nullptr, nullptr, text, 0, nullptr);
        }
        unsigned long status = 99;
        CEvents events;
        bool connected = false;
    };

    const char* Connection() const { return database.ConnexionString().c_str(); }

    /// While the table is away every insert fails on a connection that lives.
    void TakeTableAway() { database.Execute(L"ALTER TABLE EVT_JOURNAL RENAME TO EVT_AWAY"); }
    void PutTableBack() { database.Execute(L"ALTER TABLE EVT_AWAY RENAME TO EVT_JOURNAL"); }

    std::vector<std::wstring> Texts()
    {
        std::vector<std::wstring> texts;
        for (const Row& row : database.Query(L"SELECT TEXT FROM EVT_JOURNAL ORDER BY EVENTID"))
        {
            texts.push_back(row[0].value_or(L"<null>"));
        }
        return texts;
    }

    /// Spool files that hold events.
    std::vector<std::string> SpoolFiles() const
    {
        std::vector<std::string> files;
        if (std::filesystem::exists(spool))
        {
            for (const auto& entry : std::filesystem::directory_iterator(spool))
            {
                if (entry.path().extension() == ".jsonl")
                {
                    files.push_back(entry.path().string());
                }
            }
        }
        return files;
    }
    std::string OnlySpoolFile() const
    {
        const std::vector<std::string> files = SpoolFiles();
        EXPECT_EQ(files.size(), 1U);
        return files.empty() ? std::string() : files.front();
    }

    TestDatabase database;
    TemporaryFolder folder;
    std::string spool = folder.Path("spool");
    ScopedEnvironment m_variable{"SIGNUTILS_SPOOL", spool.c_str()};
};

} // namespace testing_support
