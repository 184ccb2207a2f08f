#include "tests/services/journal_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <ctime>
#include <string>
#include <vector>

namespace
{

using services::EventOutcome;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::Row;

using JournalRows = testing_support::JournalFixture;

TEST_F(JournalRows, EventIsARowWithAllItsColumns)
{
    Client client(Connection());
    EXPECT_TRUE(client.connected);
    EXPECT_EQ(client.status, 0U);
    tagATTACHEDEVENT attachment = {};
    std::strcpy(attachment.kind, "LOG");
    std::strcpy(attachment.path, "C:\\logs\\h\xF4te.log");

    EXPECT_EQ(client.events.WriteEventsWithPj(2, "REF-1", "aux \xE9", L"aux \u20AC",
                                              L"[SIGN_RULES]\r\nEntit\u00E9:O'Brien\r\n", 1,
                                              &attachment),
              EventOutcome::Written);
    EXPECT_THAT(database.Query(L"SELECT SOURCE, LEVEL, REFERENCE, AUX1, AUX2, TEXT, ATTACHKIND, "
                               L"ATTACHPATH FROM EVT_JOURNAL"),
                ElementsAre(Row{L"RULSGN", L"2", L"REF-1", L"aux \u00E9", L"aux \u20AC",
                                L"[SIGN_RULES]\r\nEntit\u00E9:O'Brien\r\n", L"LOG",
                                L"C:\\logs\\h\u00F4te.log"}));
    EXPECT_THAT(SpoolFiles(), IsEmpty());
}

TEST_F(JournalRows, NullTextsAndNoAttachmentAreNull)
{
    Client client(Connection());
    tagATTACHEDEVENT attachment = {};
    std::strcpy(attachment.kind, "LOG");
    client.events.WriteEventsWithPj(0, nullptr, nullptr, nullptr, nullptr, 0, &attachment);
    client.events.WriteEventsWithPj(0, nullptr, nullptr, nullptr, nullptr, 1, nullptr);
    const Row nulls = {std::nullopt, std::nullopt, std::nullopt,
                       std::nullopt, std::nullopt, std::nullopt};
    EXPECT_THAT(database.Query(L"SELECT REFERENCE, AUX1, AUX2, TEXT, ATTACHKIND, ATTACHPATH "
                               L"FROM EVT_JOURNAL"),
                ElementsAre(nulls, nulls));
}

TEST_F(JournalRows, EmptyTextsAreEmptyNotNull)
{
    Client client(Connection());
    client.events.WriteEventsWithPj(0, "", "", L"", L"", 0, nullptr);
    EXPECT_THAT(database.Query(L"SELECT REFERENCE, AUX1, AUX2, TEXT FROM EVT_JOURNAL"),
                ElementsAre(Row{L"", L"", L"", L""}));
}

TEST_F(JournalRows, NullSourceIsNull)
{
    unsigned long status = 5;
    CEvents events(nullptr, status);
    EXPECT_EQ(status, 0U);
    EXPECT_TRUE(events.Connect(Connection()));
    events.WriteEventsWithPj(0, nullptr, nullptr, nullptr, L"x", 0, nullptr);
    EXPECT_THAT(database.Query(L"SELECT SOURCE FROM EVT_JOURNAL"), ElementsAre(Row{std::nullopt}));
}

TEST_F(JournalRows, AttachmentFieldsWithoutANulAreTakenWhole)
{
    Client client(Connection());
    tagATTACHEDEVENT attachment = {};
    std::memset(attachment.kind, 'K', sizeof(attachment.kind));
    std::memset(attachment.path, 'p', sizeof(attachment.path));
    client.events.WriteEventsWithPj(0, nullptr, nullptr, nullptr, L"x", 1, &attachment);
    EXPECT_THAT(database.Query(L"SELECT ATTACHKIND, ATTACHPATH FROM EVT_JOURNAL"),
                ElementsAre(Row{std::wstring(10, L'K'), std::wstring(260, L'p')}));
}

TEST_F(JournalRows, KeyIsUniqueAndTheTimeLocal)
{
    Client client(Connection());
    const auto now = []
    {
        const std::time_t seconds = std::time(nullptr);
        wchar_t text[32] = {};
        std::wcsftime(text, 32, L"%Y-%m-%d %H:%M:%S", std::localtime(&seconds));
        return std::wstring(text);
    };
    const std::wstring before = now();
    client.Write(L"one");
    client.Write(L"two");
    const std::wstring after = now();

    const auto rows = database.Query(L"SELECT EVENTKEY, DATETIME FROM EVT_JOURNAL");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0][0]->size(), 36U);
    EXPECT_NE(rows[0][0], rows[1][0]);
    EXPECT_GE(rows[0][1]->substr(0, 19), before);
    EXPECT_LE(rows[1][1]->substr(0, 19), after);
}

TEST_F(JournalRows, LongTextsAreCutToTheirColumnsAndTheAuditTextIsWhole)
{
    Client client(Connection());
    const std::string reference(2000, 'r');
    const std::wstring text(100000, L't');
    EXPECT_EQ(client.events.WriteEventsWithPj(0, reference.c_str(), nullptr, nullptr, text.c_str(),
                                              0, nullptr),
              EventOutcome::Written);
    EXPECT_THAT(database.Query(L"SELECT REFERENCE, TEXT FROM EVT_JOURNAL"),
                ElementsAre(Row{std::wstring(1024, L'r'), text}));
}

TEST_F(JournalRows, ConnectFailsWithoutADatabase)
{
    EXPECT_FALSE(Client("Driver=NoSuchDriver;").connected);
    EXPECT_FALSE(Client("").connected);
    EXPECT_FALSE(Client(nullptr).connected);
}

} // namespace
