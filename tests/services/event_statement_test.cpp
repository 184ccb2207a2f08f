#include "services/event_statement.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using services::EventInsertStatement;
using services::EventRecord;

EventRecord EventOfStatement()
{
    EventRecord event;
    event.key = "01234567-89ab-4cde-8f01-23456789abcd";
    event.dateTime = "2026-03-29 14:05:09";
    event.level = 1;
    return event;
}

constexpr wchar_t kStart[] =
    L"INSERT INTO EVT_JOURNAL (EVENTKEY,DATETIME,SOURCE,LEVEL,REFERENCE,AUX1,AUX2,TEXT,"
    L"ATTACHKIND,ATTACHPATH) VALUES ('01234567-89ab-4cde-8f01-23456789abcd',"
    L"'2026-03-29 14:05:09',";

TEST(EventStatement, NamesEveryColumnOnce)
{
    EventRecord event = EventOfStatement();
    event.source = L"RULSGN";
    event.reference = L"REF-1";
    event.aux1 = L"one";
    event.aux2 = L"two";
    event.text = L"[SIGN_RULES]\r\nEntit\u00E9:A";
    event.attachKind = L"LOG";
    event.attachPath = L"/var/log/host.log";
    EXPECT_EQ(EventInsertStatement(event), std::wstring(kStart) +
                                               L"N'RULSGN',1,N'REF-1',N'one',N'two',"
                                               L"N'[SIGN_RULES]\r\nEntit\u00E9:A',N'LOG',"
                                               L"N'/var/log/host.log')");
}

TEST(EventStatement, NothingIsNull)
{
    EXPECT_EQ(EventInsertStatement(EventOfStatement()),
              std::wstring(kStart) + L"NULL,1,NULL,NULL,NULL,NULL,NULL,NULL)");
}

TEST(EventStatement, EmptyTextsAreNotNull)
{
    EventRecord event = EventOfStatement();
    event.reference = L"";
    EXPECT_EQ(EventInsertStatement(event),
              std::wstring(kStart) + L"NULL,1,N'',NULL,NULL,NULL,NULL,NULL)");
}

TEST(EventStatement, QuotesAreDoubledInEveryText)
{
    EventRecord event = EventOfStatement();
    event.source = L"'";
    event.reference = L"O'Brien";
    event.aux1 = L"''";
    event.aux2 = L"a'b'c";
    event.text = L"'; DROP TABLE EVT_JOURNAL; --";
    event.attachKind = L"'";
    event.attachPath = L"it's";
    EXPECT_EQ(EventInsertStatement(event),
              std::wstring(kStart) + L"N'''',1,N'O''Brien',N'''''',N'a''b''c',"
                                     L"N'''; DROP TABLE EVT_JOURNAL; --',N'''',N'it''s')");
}

TEST(EventStatement, TextsAreCutToTheirColumnsBeforeQuotesAreDoubled)
{
    EventRecord event = EventOfStatement();
    event.source = std::wstring(63, L's') + L"'x";
    event.reference = std::wstring(1030, L'r');
    event.aux1 = std::wstring(1030, L'a');
    event.aux2 = std::wstring(1030, L'b');
    event.text = std::wstring(5000, L't');
    event.attachKind = std::wstring(11, L'k');
    event.attachPath = std::wstring(261, L'p');
    EXPECT_EQ(EventInsertStatement(event),
              std::wstring(kStart) + L"N'" + std::wstring(63, L's') + L"''',1,N'" +
                  std::wstring(1024, L'r') + L"',N'" + std::wstring(1024, L'a') + L"',N'" +
                  std::wstring(1024, L'b') + L"',N'" + std::wstring(5000, L't') + L"',N'" +
                  std::wstring(10, L'k') + L"',N'" + std::wstring(260, L'p') + L"')");
}

TEST(EventStatement, CutLeavesNoHalfCharacter)
{
    EventRecord event = EventOfStatement();
    event.source = std::wstring(63, L's') + L"\U0001F600";
    EXPECT_EQ(EventInsertStatement(event), std::wstring(kStart) + L"N'" + std::wstring(63, L's') +
                                               L"',1,NULL,NULL,NULL,NULL,NULL,NULL)");
}

TEST(EventStatement, CharactersBeyondSixteenBitsTakeTwoPlacesOfTheirColumn)
{
    EventRecord event = EventOfStatement();
    event.attachKind = L"\U0001F600\U0001F600\U00010000\U0001F600\U0001F600x";
    EXPECT_EQ(EventInsertStatement(event),
              std::wstring(kStart) +
                  L"NULL,1,NULL,NULL,NULL,NULL,"
                  L"N'\U0001F600\U0001F600\U00010000\U0001F600\U0001F600',NULL)");
}

TEST(EventStatement, LastCharacterOfSixteenBitsTakesOnePlace)
{
    EventRecord event = EventOfStatement();
    event.attachKind = std::wstring(11, L'\xFFFF');
    EXPECT_EQ(EventInsertStatement(event), std::wstring(kStart) + L"NULL,1,NULL,NULL,NULL,NULL,N'" +
                                               std::wstring(10, L'\xFFFF') + L"',NULL)");
}

TEST(EventStatement, PercentSignsAreText)
{
    EventRecord event = EventOfStatement();
    event.text = L"100 %s %d %";
    EXPECT_EQ(EventInsertStatement(event),
              std::wstring(kStart) + L"NULL,1,NULL,NULL,NULL,N'100 %s %d %',NULL,NULL)");
}

} // namespace
