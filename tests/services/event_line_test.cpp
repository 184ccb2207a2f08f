#include "services/event_line.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using services::EventLine;
using services::EventRecord;
using services::ReadEventLine;

constexpr char kKey[] = "01234567-89ab-4cde-8f01-23456789abcd";

EventRecord EventOfLine()
{
    EventRecord event;
    event.key = kKey;
    event.dateTime = "2026-03-29 14:05:09";
    event.level = 2;
    event.source = L"RULSGN";
    event.text = L"[SIGN_RULES]\r\nEntit\u00E9:A";
    return event;
}

std::string WithoutLineFeed(const EventRecord& event)
{
    const std::string line = EventLine(event);
    return line.substr(0, line.size() - 1);
}

TEST(EventLine, IsOneFlatJsonObject)
{
    EXPECT_EQ(EventLine(EventOfLine()),
              "{\"EVENTKEY\":\"01234567-89ab-4cde-8f01-23456789abcd\","
              "\"DATETIME\":\"2026-03-29 14:05:09\",\"LEVEL\":2,\"SOURCE\":\"RULSGN\","
              "\"REFERENCE\":null,\"AUX1\":null,\"AUX2\":null,"
              "\"TEXT\":\"[SIGN_RULES]\\u000d\\u000aEntit\xC3\xA9:A\","
              "\"ATTACHKIND\":null,\"ATTACHPATH\":null}\n");
}

TEST(EventLine, BeginsAsItsKeyTells)
{
    EXPECT_EQ(EventLine(EventOfLine()).rfind(services::EventLineStart(kKey), 0), 0U);
}

TEST(EventLine, IsReadAsItWasWritten)
{
    EventRecord event = EventOfLine();
    event.level = 65535;
    event.reference = L"";
    event.aux1 = L"quote \" backslash \\ both \\\" \\u0041 slash /";
    event.aux2 = L"\x01\x1F\t\b\f \x7F \u20AC \u03A9";
    event.text = std::wstring(100000, L'x') + L"\U0001F600";
    event.attachKind = L"LOG";
    event.attachPath = L"C:\\logs\\a.log";

    const auto read = ReadEventLine(WithoutLineFeed(event));
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(*read, event);
}

TEST(EventLine, NothingIsTheSameAsNoText)
{
    EventRecord event = EventOfLine();
    event.source.reset();
    event.text.reset();
    event.reference = L"";
    const auto read = ReadEventLine(WithoutLineFeed(event));
    ASSERT_TRUE(read.has_value());
    EXPECT_FALSE(read->source.has_value());
    EXPECT_FALSE(read->text.has_value());
    EXPECT_EQ(read->reference, L"");
}

TEST(EventLine, NoStartOfALineIsReadAsAnEvent)
{
    const std::string line = WithoutLineFeed(EventOfLine());
    for (std::size_t length = 0; length < line.size(); ++length)
    {
        EXPECT_FALSE(ReadEventLine(line.substr(0, length)).has_value()) << line.substr(0, length);
    }
    EXPECT_TRUE(ReadEventLine(line).has_value());
}

struct DamageCase
{
    const char* name;
    const char* good;
    std::string bad;
};

class DamagedEventLine : public testing::TestWithParam<DamageCase>
{
};

TEST_P(DamagedEventLine, IsRefused)
{
    std::string line = WithoutLineFeed(EventOfLine());
    const std::string good = GetParam().good;
    const std::size_t position = line.find(good);
    ASSERT_NE(position, std::string::npos);
    line.replace(position, good.size(), GetParam().bad);
    EXPECT_FALSE(ReadEventLine(line).has_value()) << line;
}

INSTANTIATE_TEST_SUITE_P(
    Damages, DamagedEventLine,
    testing::Values(DamageCase{"BlankBehindAColon", "\":2", "\": 2"},
                    DamageCase{"LevelTooLarge", "\":2", "\":65536"},
                    DamageCase{"LevelWithManyDigits", "\":2", "\":99999999999999999999"},
                    DamageCase{"NegativeLevel", "\":2", "\":-1"},
                    DamageCase{"NoLevel", "\":2", "\":"},
                    DamageCase{"LevelWithLeadingZero", "\":2", "\":02"},
                    DamageCase{"LevelAsText", "\":2", "\":\"2\""},
                    DamageCase{"MemberMissing", "\"AUX1\":null,", ""},
                    DamageCase{"MemberTwice", "\"AUX1\":null,", "\"AUX1\":null,\"AUX1\":null,"},
                    DamageCase{"MembersInAnotherOrder", "\"AUX1\":null,\"AUX2\":null",
                               "\"AUX2\":null,\"AUX1\":null"},
                    DamageCase{"UnknownMember", "\"AUX1\"", "\"AUX3\""},
                    DamageCase{"BehindTheEnd", "null}", "null} "},
                    DamageCase{"TwoEventsInALine", "null}", "null}{\"EVENTKEY\":"},
                    DamageCase{"ForeignKey", "01234567", "0123456'"},
                    DamageCase{"ForeignDate", "2026-03-29 14", "2026-03-29T14"},
                    DamageCase{"DateWithAQuote", "14:05:09", "14:05:0'"},
                    DamageCase{"DateTooLong", "14:05:09", "14:05:09.1"},
                    DamageCase{"ControlCharacter", "RULSGN", "RUL\tGN"},
                    DamageCase{"NulByte", "RULSGN", std::string("RUL\0GN", 6)},
                    DamageCase{"EscapedNul", "RULSGN", "RUL\\u0000GN"},
                    DamageCase{"UnknownEscape", "RULSGN", "RUL\\xGN"},
                    DamageCase{"EscapeNeverWritten", "RULSGN", "RUL\\u0041GN"},
                    DamageCase{"HalfAnEscape", "RULSGN", "RUL\\u00"},
                    DamageCase{"EscapeInCapitals", "RULSGN", "RUL\\u001FGN"},
                    DamageCase{"NotUtf8", "RULSGN", "RUL\xC9GN"},
                    DamageCase{"OverlongUtf8", "RULSGN", "RUL\xC0\xAFGN"}),
    [](const auto& run) { return run.param.name; });

} // namespace
