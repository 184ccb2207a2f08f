#include "tests/services/journal_fixture.h"

#include "database/cdatabase.h"
#include "services/event_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace
{

using services::EventOutcome;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing_support::ReadWholeFile;
using testing_support::Row;
using testing_support::ScopedEnvironment;

using JournalSpool = testing_support::JournalFixture;

TEST_F(JournalSpool, WithoutAConnectionTheEventIsSpooled)
{
    Client client("Driver=NoSuchDriver;Database=x");
    EXPECT_EQ(client.Write(L"kept"), EventOutcome::Spooled);
    EXPECT_THAT(ReadWholeFile(OnlySpoolFile()), HasSubstr("\"TEXT\":\"kept\""));
    EXPECT_THAT(Texts(), IsEmpty());
}

TEST_F(JournalSpool, ConnectionTextsHaveSpoolFilesOfTheirOwn)
{
    Client first("Driver=NoSuchDriver;Database=x");
    Client second("Driver=NoSuchDriver;Database=y");
    first.Write(L"for x");
    second.Write(L"for y");
    EXPECT_EQ(SpoolFiles().size(), 2U);
}

TEST_F(JournalSpool, EventsWithoutAConnectionTextNeverReachADatabase)
{
    unsigned long status = 0;
    CEvents never("RULSGN", status);
    EXPECT_EQ(never.WriteEventsWithPj(0, nullptr, nullptr, nullptr, L"a", 0, nullptr),
              EventOutcome::Spooled);
    EXPECT_EQ(Client("").Write(L"b"), EventOutcome::Spooled);
    EXPECT_EQ(Client(nullptr).Write(L"c"), EventOutcome::Spooled);
    EXPECT_EQ(OnlySpoolFile(),
              (std::filesystem::path(spool) / "events-unaddressed.jsonl").string());

    Client client(Connection());
    EXPECT_EQ(client.Write(L"d"), EventOutcome::Written);
    EXPECT_THAT(Texts(), ElementsAre(L"d"));
    EXPECT_EQ(SpoolFiles().size(), 1U);
}

TEST_F(JournalSpool, SpooledEventsAreDeliveredOnceByALaterConnection)
{
    TakeTableAway();
    {
        Client client(Connection());
        EXPECT_TRUE(client.connected);
        EXPECT_EQ(client.Write(L"one"), EventOutcome::Spooled);
        EXPECT_EQ(client.Write(L"two"), EventOutcome::Spooled);
    }
    PutTableBack();
    EXPECT_THAT(Texts(), IsEmpty());
    EXPECT_TRUE(Client(Connection()).connected);
    EXPECT_THAT(Texts(), ElementsAre(L"one", L"two"));
    EXPECT_THAT(SpoolFiles(), IsEmpty());
    EXPECT_TRUE(Client(Connection()).connected);
    EXPECT_THAT(Texts(), ElementsAre(L"one", L"two"));
}

TEST_F(JournalSpool, SpooledEventsGoToNoOtherDatabase)
{
    TakeTableAway();
    Client(Connection()).Write(L"mine");
    PutTableBack();
    const std::string sameDatabaseOtherText = database.ConnexionString() + ";";
    EXPECT_TRUE(Client(sameDatabaseOtherText.c_str()).connected);
    EXPECT_THAT(Texts(), IsEmpty());
    EXPECT_EQ(SpoolFiles().size(), 1U);
}

TEST_F(JournalSpool, LateDeliveryKeepsTheEventWhole)
{
    TakeTableAway();
    Client client(Connection());
    tagATTACHEDEVENT attachment = {};
    std::strcpy(attachment.kind, "LOG");
    std::strcpy(attachment.path, "C:\\a.log");
    client.events.WriteEventsWithPj(1, "REF", nullptr, L"", L"line\r\n\u00C9t\u00E9 'q' \"\\\u20AC",
                                    1, &attachment);
    const std::string path = OnlySpoolFile();
    std::string line = ReadWholeFile(path);
    const std::string key = line.substr(line.find(":\"") + 2, 36);
    // As if it had waited since then.
    line.replace(line.find("\"DATETIME\":\"") + 12, 19, "2020-02-29 23:59:58");
    std::ofstream(path, std::ios::binary | std::ios::trunc) << line;
    PutTableBack();
    Client later(Connection());

    EXPECT_THAT(
        database.Query(L"SELECT EVENTKEY, LEVEL, SOURCE, REFERENCE, AUX1, AUX2, TEXT, "
                       L"ATTACHKIND, ATTACHPATH FROM EVT_JOURNAL"),
        ElementsAre(Row{std::wstring(key.begin(), key.end()), L"1", L"RULSGN", L"REF", std::nullopt,
                        L"", L"line\r\n\u00C9t\u00E9 'q' \"\\\u20AC", L"LOG", L"C:\\a.log"}));
    EXPECT_EQ(database.Query(L"SELECT DATETIME FROM EVT_JOURNAL")[0][0]->substr(0, 19),
              L"2020-02-29 23:59:58");
}

TEST_F(JournalSpool, KeyThatIsThereAlreadyCountsAsDelivered)
{
    TakeTableAway();
    {
        Client client(Connection());
        client.Write(L"one");
        client.Write(L"two");
    }
    const std::string lines = ReadWholeFile(OnlySpoolFile());
    const std::string path = OnlySpoolFile();
    PutTableBack();
    EXPECT_TRUE(Client(Connection()).connected);
    // A process that ended before it could take them out of the spool.
    std::ofstream(path, std::ios::binary) << lines;
    EXPECT_TRUE(Client(Connection()).connected);
    EXPECT_THAT(Texts(), ElementsAre(L"one", L"two"));
    EXPECT_THAT(SpoolFiles(), IsEmpty());
}

TEST_F(JournalSpool, NewEventDoesNotOvertakeSpooledOnes)
{
    TakeTableAway();
    Client client(Connection());
    EXPECT_EQ(client.Write(L"one"), EventOutcome::Spooled);
    PutTableBack();
    EXPECT_EQ(client.Write(L"two"), EventOutcome::Written);
    EXPECT_THAT(Texts(), ElementsAre(L"one", L"two"));
    EXPECT_THAT(SpoolFiles(), IsEmpty());
}

TEST_F(JournalSpool, EventsThatCannotBeDeliveredStayInOrder)
{
    TakeTableAway();
    {
        Client client(Connection());
        client.Write(L"one");
        client.Write(L"two");
    }
    Client second(Connection());
    EXPECT_TRUE(second.connected);
    EXPECT_EQ(second.Write(L"three"), EventOutcome::Spooled);
    PutTableBack();
    EXPECT_TRUE(Client(Connection()).connected);
    EXPECT_THAT(Texts(), ElementsAre(L"one", L"two", L"three"));
}

TEST_F(JournalSpool, NoContactWaitsForMoreThanItsShareOfALongSpool)
{
    constexpr std::size_t kShare = services::EventStore::kMostDelivered;
    TakeTableAway();
    {
        Client client(Connection());
        for (std::size_t event = 0; event < 2 * kShare + 5; ++event)
        {
            ASSERT_EQ(client.Write(std::to_wstring(event).c_str()), EventOutcome::Spooled);
        }
    }
    PutTableBack();
    Client client(Connection());
    EXPECT_EQ(Texts().size(), kShare);
    EXPECT_EQ(client.Write(L"behind them"), EventOutcome::Spooled);
    EXPECT_EQ(Texts().size(), 2 * kShare);
    EXPECT_EQ(client.Write(L"the last"), EventOutcome::Written);

    const std::vector<std::wstring> texts = Texts();
    ASSERT_EQ(texts.size(), 2 * kShare + 7);
    for (std::size_t event = 0; event < 2 * kShare + 5; ++event)
    {
        EXPECT_EQ(texts[event], std::to_wstring(event));
    }
    EXPECT_EQ(texts[2 * kShare + 5], L"behind them");
    EXPECT_EQ(texts[2 * kShare + 6], L"the last");
    EXPECT_THAT(SpoolFiles(), IsEmpty());
}

TEST_F(JournalSpool, DamagedLinesAreSetAsideAndBlockNothing)
{
    TakeTableAway();
    {
        Client client(Connection());
        client.Write(L"one");
        std::ofstream(OnlySpoolFile(), std::ios::binary | std::ios::app) << "{\"EVENTKEY\":\"torn";
        client.Write(L"two");
    }
    const std::filesystem::path path = OnlySpoolFile();
    PutTableBack();
    EXPECT_TRUE(Client(Connection()).connected);
    EXPECT_THAT(Texts(), ElementsAre(L"one", L"two"));
    std::filesystem::path aside = path;
    EXPECT_EQ(ReadWholeFile(aside.replace_extension(".damaged").string()),
              "{\"EVENTKEY\":\"torn\n");
}

TEST_F(JournalSpool, PasswordIsWrittenNowhere)
{
    Client client("Driver=NoSuchDriver;UID=bank;PWD=s3cr3t-word;");
    client.Write(L"kept");
    int seen = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path()))
    {
        EXPECT_THAT(entry.path().string(), Not(HasSubstr("s3cr3t")));
        EXPECT_THAT(entry.path().string(), Not(HasSubstr("bank")));
        if (entry.is_regular_file())
        {
            EXPECT_THAT(ReadWholeFile(entry.path().string()), Not(HasSubstr("s3cr3t")));
            ++seen;
        }
    }
    EXPECT_GE(seen, 1);
}

TEST_F(JournalSpool, WithoutDatabaseAndSpoolTheEventIsLost)
{
    const std::string file = folder.Write("no-folder", "");
    const ScopedEnvironment variable("SIGNUTILS_SPOOL", file.c_str());
    EXPECT_EQ(Client("Driver=NoSuchDriver;").Write(L"gone"), EventOutcome::Lost);
    EXPECT_EQ(Client("").Write(L"gone"), EventOutcome::Lost);
    EXPECT_EQ(Client(Connection()).Write(L"written"), EventOutcome::Written);
}

TEST_F(JournalSpool, SpoolThatCannotBeExtendedDoesNotKeepAnEventFromTheDatabase)
{
    TakeTableAway();
    Client client(Connection());
    client.Write(L"one");
    const std::filesystem::path path = OnlySpoolFile();
    std::filesystem::path lock = path;
    lock.replace_extension(".append.lock");
    std::filesystem::remove(lock);
    std::filesystem::create_directory(lock);
    PutTableBack();
    EXPECT_EQ(client.Write(L"two"), EventOutcome::Written);
    std::filesystem::remove(lock);
    EXPECT_EQ(client.Write(L"three"), EventOutcome::Written);
    EXPECT_THAT(Texts(), ElementsAre(L"two", L"one", L"three"));
}

TEST_F(JournalSpool, SecondConnectLeavesTheFirstDatabase)
{
    Client client("Driver=NoSuchDriver;Database=x");
    client.Write(L"for x");
    EXPECT_TRUE(client.events.Connect(Connection()));
    EXPECT_EQ(client.Write(L"for the test"), EventOutcome::Written);
    EXPECT_FALSE(client.events.Connect("Driver=NoSuchDriver;Database=x"));
    EXPECT_EQ(client.Write(L"for x again"), EventOutcome::Spooled);
    EXPECT_THAT(Texts(), ElementsAre(L"for the test"));
    EXPECT_THAT(ReadWholeFile(OnlySpoolFile()), HasSubstr("for x again"));
}

TEST_F(JournalSpool, TwoClientsWriteOneAfterTheOther)
{
    Client first(Connection());
    Client second(Connection());
    EXPECT_EQ(first.Write(L"1"), EventOutcome::Written);
    EXPECT_EQ(second.Write(L"2"), EventOutcome::Written);
    EXPECT_EQ(first.Write(L"3"), EventOutcome::Written);
    EXPECT_THAT(Texts(), ElementsAre(L"1", L"2", L"3"));
}

TEST_F(JournalSpool, ClientsInThreadsNeitherLoseNorDouble)
{
    TakeTableAway();
    {
        Client client(Connection());
        for (int event = 0; event < 20; ++event)
        {
            client.Write((L"early/" + std::to_wstring(event)).c_str());
        }
    }
    PutTableBack();
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 3; ++thread)
    {
        threads.emplace_back(
            [this, thread]
            {
                Client client(Connection());
                EXPECT_TRUE(client.connected);
                for (int event = 0; event < 10; ++event)
                {
                    EXPECT_EQ(
                        client.Write(
                            (std::to_wstring(thread) + L"/" + std::to_wstring(event)).c_str()),
                        EventOutcome::Written);
                }
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    const std::vector<std::wstring> texts = Texts();
    EXPECT_EQ(texts.size(), 50U);
    EXPECT_EQ(std::set<std::wstring>(texts.begin(), texts.end()).size(), 50U);
    EXPECT_THAT(SpoolFiles(), IsEmpty());
}

/// A database that is not there at first and comes under the same connection text.
TEST_F(JournalSpool, DatabaseThatComesLaterGetsWhatWasMeantForIt)
{
    const std::string& there = database.ConnexionString();
    if (there.find("SQLite") == std::string::npos)
    {
        GTEST_SKIP() << "needs a database that is a file";
    }
    const std::string path = std::regex_replace(there, std::regex(".*Database=([^;]*).*"), "$1");
    const std::string later = folder.Path("later/rules.db");
    std::string connection = there;
    connection.replace(connection.find(path), path.size(), later);

    Client absent(connection.c_str());
    EXPECT_FALSE(absent.connected);
    EXPECT_EQ(absent.Write(L"waiting"), EventOutcome::Spooled);
    EXPECT_EQ(absent.Write(L"too"), EventOutcome::Spooled);

    std::filesystem::create_directory(folder.Path("later"));
    std::filesystem::copy_file(path, later);
    {
        Client present(connection.c_str());
        EXPECT_TRUE(present.connected);
        EXPECT_EQ(present.Write(L"now"), EventOutcome::Written);
    }
    EXPECT_THAT(SpoolFiles(), IsEmpty());
    EXPECT_THAT(Texts(), IsEmpty());
    CDatabase copy;
    copy.OpenEx(connection.c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    EXPECT_EQ(copy.ExecuteSQLW(L"UPDATE EVT_JOURNAL SET LEVEL = 9 WHERE (EVENTID = 1 AND TEXT = "
                               L"N'waiting') OR (EVENTID = 2 AND TEXT = N'too') OR (EVENTID = 3 "
                               L"AND TEXT = N'now')"),
              3);
}

} // namespace
