#include "services/event_spool.h"

#include "services/event_key.h"
#include "services/event_line.h"
#include "tests/testing/platform.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace
{

using services::Delivery;
using services::EventRecord;
using services::EventSpool;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::ReadWholeFile;
using testing_support::TemporaryFolder;

constexpr char kConnection[] = "Driver=SQLite3;Database=/bank/rules.db";

EventRecord Event(const std::wstring& text)
{
    EventRecord event;
    event.key = services::MakeEventKey();
    event.dateTime = "2026-03-29 14:05:09";
    event.text = text;
    return event;
}

class Spool : public testing::Test
{
protected:
    /// Texts offered, each answered as `answer` tells.
    template <typename Answer>
    std::vector<std::wstring> Offered(const Answer& answer)
    {
        std::vector<std::wstring> texts;
        spool.Deliver(
            [&](const EventRecord& event)
            {
                texts.push_back(event.text.value_or(L""));
                return answer(event);
            });
        return texts;
    }
    std::vector<std::wstring> Delivered()
    {
        return Offered([](const EventRecord&) { return Delivery::Delivered; });
    }

    /// The spool file with this ending; there must be one.
    std::string FileEnding(const std::string& ending) const
    {
        for (const auto& entry : std::filesystem::directory_iterator(spoolFolder))
        {
            if (entry.path().extension() == ending)
            {
                return entry.path().string();
            }
        }
        ADD_FAILURE() << "no file " << ending;
        return std::string();
    }
    bool HasFileEnding(const std::string& ending) const
    {
        const std::filesystem::directory_iterator entries(spoolFolder);
        return std::any_of(begin(entries), end(entries),
                           [&](const auto& entry) { return entry.path().extension() == ending; });
    }
    void AddBytes(const std::string& bytes) const
    {
        std::ofstream(FileEnding(".jsonl"), std::ios::binary | std::ios::app) << bytes;
    }

    TemporaryFolder folder;
    std::string spoolFolder = folder.Path("spool");
    EventSpool spool{spoolFolder, kConnection};
};

TEST_F(Spool, OffersItsEventsInOrderOnce)
{
    EXPECT_FALSE(spool.HoldsEvents());
    ASSERT_TRUE(spool.Append(Event(L"one")));
    ASSERT_TRUE(spool.Append(Event(L"two")));
    ASSERT_TRUE(spool.Append(Event(L"three")));
    EXPECT_TRUE(spool.HoldsEvents());

    EXPECT_THAT(Delivered(), ElementsAre(L"one", L"two", L"three"));
    EXPECT_FALSE(spool.HoldsEvents());
    EXPECT_THAT(Delivered(), IsEmpty());
}

TEST_F(Spool, GivesBackWhatWasAppended)
{
    EventRecord event = Event(L"[SIGN_RULES]\r\nEntit\u00E9:A \u20AC \"'\\");
    event.level = 2;
    event.source = L"RULSGN";
    event.reference = L"REF";
    event.attachKind = L"LOG";
    event.attachPath = L"C:\\a.log";
    ASSERT_TRUE(spool.Append(event));

    std::vector<EventRecord> offered;
    spool.Deliver(
        [&](const EventRecord& each)
        {
            offered.push_back(each);
            return Delivery::Delivered;
        });
    EXPECT_THAT(offered, ElementsAre(event));
}

TEST_F(Spool, StopsAtTheFirstEventThatTheDatabaseCannotTakeNow)
{
    ASSERT_TRUE(spool.Append(Event(L"one")));
    ASSERT_TRUE(spool.Append(Event(L"two")));
    ASSERT_TRUE(spool.Append(Event(L"three")));

    EXPECT_THAT(Offered([](const EventRecord& event)
                        { return event.text == L"two" ? Delivery::Stopped : Delivery::Delivered; }),
                ElementsAre(L"one", L"two"));
    ASSERT_TRUE(spool.Append(Event(L"four")));
    EXPECT_THAT(Delivered(), ElementsAre(L"two", L"three", L"four"));
}

TEST_F(Spool, RefusedEventKeepsItsPlaceAndBlocksNoOther)
{
    ASSERT_TRUE(spool.Append(Event(L"one")));
    ASSERT_TRUE(spool.Append(Event(L"never")));
    ASSERT_TRUE(spool.Append(Event(L"three")));

    EXPECT_THAT(
        Offered([](const EventRecord& event)
                { return event.text == L"never" ? Delivery::Refused : Delivery::Delivered; }),
        ElementsAre(L"one", L"never", L"three"));
    ASSERT_TRUE(spool.Append(Event(L"four")));
    EXPECT_THAT(Delivered(), ElementsAre(L"never", L"four"));
}

TEST_F(Spool, KnowsWhichEventsItHolds)
{
    const EventRecord event = Event(L"one");
    EXPECT_FALSE(spool.Holds(event.key));
    ASSERT_TRUE(spool.Append(event));
    EXPECT_TRUE(spool.Holds(event.key));
    EXPECT_FALSE(spool.Holds(services::MakeEventKey()));
    Delivered();
    EXPECT_FALSE(spool.Holds(event.key));
}

TEST_F(Spool, EventAppendedDuringADeliveryStays)
{
    ASSERT_TRUE(spool.Append(Event(L"one")));
    EXPECT_THAT(Offered(
                    [&](const EventRecord&)
                    {
                        EXPECT_TRUE(spool.Append(Event(L"meanwhile")));
                        return Delivery::Delivered;
                    }),
                ElementsAre(L"one"));
    EXPECT_THAT(Delivered(), ElementsAre(L"meanwhile"));
}

TEST_F(Spool, DeliveryThatIsBrokenOffLeavesEveryEvent)
{
    ASSERT_TRUE(spool.Append(Event(L"one")));
    ASSERT_TRUE(spool.Append(Event(L"two")));
    EXPECT_THROW(spool.Deliver([](const EventRecord&) -> Delivery { throw std::bad_alloc(); }),
                 std::bad_alloc);
    EXPECT_THAT(Delivered(), ElementsAre(L"one", L"two"));
}

TEST_F(Spool, ConnectionTextsHaveFilesOfTheirOwn)
{
    EventSpool other(spoolFolder, std::string(kConnection) + ";");
    EventSpool unaddressed(spoolFolder, "");
    ASSERT_TRUE(spool.Append(Event(L"mine")));
    ASSERT_TRUE(other.Append(Event(L"other")));
    ASSERT_TRUE(unaddressed.Append(Event(L"nobody's")));

    EXPECT_THAT(Delivered(), ElementsAre(L"mine"));
    EXPECT_TRUE(other.HoldsEvents());
    EXPECT_TRUE(unaddressed.HoldsEvents());
    EXPECT_TRUE(std::filesystem::exists(spoolFolder + "/events-unaddressed.jsonl"));
}

TEST_F(Spool, TornLastLineIsSetAsideAndBlocksNothing)
{
    ASSERT_TRUE(spool.Append(Event(L"one")));
    const std::string torn = services::EventLine(Event(L"torn")).substr(0, 60);
    AddBytes(torn);

    EXPECT_THAT(Delivered(), ElementsAre(L"one"));
    EXPECT_EQ(ReadWholeFile(FileEnding(".damaged")), torn + "\n");
    EXPECT_FALSE(spool.HoldsEvents());
}

TEST_F(Spool, EventAppendedBehindATornLineIsWhole)
{
    ASSERT_TRUE(spool.Append(Event(L"one")));
    AddBytes("{\"EVENTKEY\":\"0123");
    ASSERT_TRUE(spool.Append(Event(L"two")));

    EXPECT_THAT(Delivered(), ElementsAre(L"one", L"two"));
    EXPECT_EQ(ReadWholeFile(FileEnding(".damaged")), "{\"EVENTKEY\":\"0123\n");
}

TEST_F(Spool, WholeLastLineWithoutItsLineFeedIsAnEvent)
{
    ASSERT_TRUE(spool.Append(Event(L"one")));
    const std::string line = services::EventLine(Event(L"two"));
    AddBytes(line.substr(0, line.size() - 1));

    EXPECT_THAT(Delivered(), ElementsAre(L"one", L"two"));
    EXPECT_FALSE(HasFileEnding(".damaged"));
}

TEST_F(Spool, StoppedLastLineGetsItsLineFeed)
{
    ASSERT_TRUE(spool.Append(Event(L"one")));
    const std::string line = services::EventLine(Event(L"two"));
    AddBytes(line.substr(0, line.size() - 1));

    Offered([](const EventRecord& event)
            { return event.text == L"two" ? Delivery::Stopped : Delivery::Delivered; });
    EXPECT_EQ(ReadWholeFile(FileEnding(".jsonl")), line);
    ASSERT_TRUE(spool.Append(Event(L"three")));
    EXPECT_THAT(Delivered(), ElementsAre(L"two", L"three"));
}

TEST_F(Spool, DamagedLinesAnywhereAreCollected)
{
    ASSERT_TRUE(spool.Append(Event(L"one")));
    AddBytes("rubbish\n\n" + std::string(8, '\0') + "\n");
    ASSERT_TRUE(spool.Append(Event(L"two")));
    EXPECT_THAT(Delivered(), ElementsAre(L"one", L"two"));

    ASSERT_TRUE(spool.Append(Event(L"three")));
    AddBytes("more\n");
    EXPECT_THAT(Delivered(), ElementsAre(L"three"));
    EXPECT_EQ(ReadWholeFile(FileEnding(".damaged")),
              "rubbish\n" + std::string(8, '\0') + "\nmore\n");
}

TEST_F(Spool, DamagedLineThatCannotBeSetAsideStays)
{
    ASSERT_TRUE(spool.Append(Event(L"one")));
    AddBytes("rubbish\n");
    const std::string before = ReadWholeFile(FileEnding(".jsonl"));
    std::filesystem::path aside = FileEnding(".jsonl");
    std::filesystem::create_directory(aside.replace_extension(".damaged"));

    EXPECT_THAT(Delivered(), ElementsAre(L"one"));
    EXPECT_EQ(ReadWholeFile(FileEnding(".jsonl")), before);
}

TEST_F(Spool, FolderThatCannotBeUsedIsAFailure)
{
    const EventSpool nowhere(folder.Write("a-file", ""), kConnection);
    EXPECT_FALSE(nowhere.Append(Event(L"one")));
    EXPECT_FALSE(nowhere.HoldsEvents());
    nowhere.Deliver(
        [](const EventRecord&)
        {
            ADD_FAILURE();
            return Delivery::Delivered;
        });
}

TEST_F(Spool, FileThatCannotBeWrittenIsAFailure)
{
    ASSERT_TRUE(spool.Append(Event(L"one")));
    const std::string path = FileEnding(".jsonl");
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    EXPECT_FALSE(spool.Append(Event(L"two")));
    EXPECT_THAT(Delivered(), IsEmpty());
}

TEST_F(Spool, FolderIsItsOwnersAlone)
{
    ASSERT_TRUE(spool.Append(Event(L"one")));
    EXPECT_TRUE(testing_support::IsForOwnerOnly(spoolFolder));
    EXPECT_TRUE(testing_support::IsForOwnerOnly(FileEnding(".jsonl")));
}

TEST_F(Spool, AppendersAndDeliverersAtOnceNeitherLoseNorDouble)
{
    constexpr int kThreads = 3;
    constexpr int kEvents = 40;
    std::mutex mutex;
    std::multiset<std::wstring> delivered;
    const auto deliver = [&]
    {
        const EventSpool own(spoolFolder, kConnection);
        own.Deliver(
            [&](const EventRecord& event)
            {
                const std::lock_guard hold(mutex);
                delivered.insert(event.text.value_or(L""));
                return Delivery::Delivered;
            });
    };
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
    {
        threads.emplace_back(
            [&, thread]
            {
                const EventSpool own(spoolFolder, kConnection);
                for (int event = 0; event < kEvents; ++event)
                {
                    EXPECT_TRUE(
                        own.Append(Event(std::to_wstring(thread) + L"/" + std::to_wstring(event))));
                    if (event % 8 == 0)
                    {
                        deliver();
                    }
                }
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    deliver();

    EXPECT_EQ(delivered.size(), static_cast<std::size_t>(kThreads * kEvents));
    EXPECT_EQ(std::set<std::wstring>(delivered.begin(), delivered.end()).size(), delivered.size());
    EXPECT_FALSE(spool.HoldsEvents());
    EXPECT_FALSE(HasFileEnding(".damaged"));
}

} // namespace
