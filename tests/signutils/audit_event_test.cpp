#include "signutils/audit_event.h"
#include "tests/signutils/session_fixture.h"
#include "tests/testing/failing_allocations.h"

#include <gmock/gmock.h>

#include <cstring>
#include <string>

using namespace testing_support;
using ::testing::HasSubstr;
using ::testing::Not;

namespace
{

std::wstring ModeName(unsigned int messageNumber)
{
    TSimpleString narrow;
    narrow.LoadStringA(messageNumber);
    TSimpleStringW wide;
    wide.FromNarrow(narrow.SafeGetString());
    return wide.SafeGetString();
}

signutils::AuditHeader FullHeader()
{
    return {true, "EBICS", "PARTNER1", "CLIENT12", "SERVICE1", 42, "ORDER12345"};
}

std::wstring TextOf(const signutils::AuditHeader& header, const wchar_t* message)
{
    return signutils::BuildAuditText(header, message).SafeGetString();
}

TEST(AuditText, HoldsEveryFieldOfTheHeaderInItsOrder)
{
    EXPECT_EQ(TextOf(FullHeader(), L"first\r\nsecond"),
              L"[SIGN_RULES]\r\nMode:" + ModeName(355) +
                  L"\r\nProtocol:EBICS\r\nEntit\u00e9:PARTNER1\r\nClient:CLIENT12\r\n"
                  L"Service:SERVICE1\r\nIdFichier=42\r\nOrderId=ORDER12345\r\n\r\n"
                  L"first\r\nsecond");
}

TEST(AuditText, ModeNamesTheSideOfTheCheck)
{
    signutils::AuditHeader header = FullHeader();
    EXPECT_THAT(TextOf(header, L""), HasSubstr(L"\r\nMode:" + ModeName(355) + L"\r\n"));
    header.serverMode = false;
    EXPECT_THAT(TextOf(header, L""), HasSubstr(L"\r\nMode:" + ModeName(356) + L"\r\n"));
    EXPECT_NE(ModeName(355), ModeName(356));
    EXPECT_NE(ModeName(355), L"");
}

TEST(AuditText, TwoCharacterPartnerIsFollowedBySixBlanks)
{
    signutils::AuditHeader header = FullHeader();
    header.partner = "AB";
    EXPECT_THAT(TextOf(header, L""), HasSubstr(L"\r\nEntit\u00e9:AB      \r\n"));
}

TEST(AuditText, ClientAndServiceArePaddedToo)
{
    signutils::AuditHeader header = FullHeader();
    header.client = "C";
    header.service = "";
    EXPECT_THAT(TextOf(header, L""),
                HasSubstr(L"\r\nClient:C       \r\nService:        \r\nIdFichier"));
}

TEST(AuditText, OrderIdentifierOfTwelveCharactersIsCutToItsFirstTen)
{
    signutils::AuditHeader header = FullHeader();
    header.orderId = "ORDER1234567";
    EXPECT_THAT(TextOf(header, L""), HasSubstr(L"\r\nOrderId=ORDER12345\r\n\r\n"));
}

TEST(AuditText, ShortOrderIdentifierIsPaddedToTen)
{
    signutils::AuditHeader header = FullHeader();
    header.orderId = "A1";
    EXPECT_THAT(TextOf(header, L""), HasSubstr(L"\r\nOrderId=A1        \r\n\r\n"));
}

TEST(AuditText, FileIdentifierIsASignedDecimal)
{
    signutils::AuditHeader header = FullHeader();
    header.idFileVfs = 0xFFFFFFFFU;
    EXPECT_THAT(TextOf(header, L""), HasSubstr(L"\r\nIdFichier=-1\r\n"));
    header.idFileVfs = 0x7FFFFFFFU;
    EXPECT_THAT(TextOf(header, L""), HasSubstr(L"\r\nIdFichier=2147483647\r\n"));
}

TEST(AuditText, NarrowTextsAreWindows1252)
{
    signutils::AuditHeader header = FullHeader();
    header.partner = "SOCI\xC9T\xC9";
    header.protocolName = "10 \x80";
    const std::wstring text = TextOf(header, L"");
    EXPECT_THAT(text, HasSubstr(L"\r\nEntit\u00e9:SOCI\u00c9T\u00c9 \r\n"));
    EXPECT_THAT(text, HasSubstr(L"\r\nProtocol:10 \u20ac\r\n"));
}

TEST(AuditText, PercentSignsOfTheMessageAreText)
{
    EXPECT_THAT(TextOf(FullHeader(), L"100%s %d %n"), HasSubstr(L"\r\n\r\n100%s %d %n"));
}

TEST(AuditText, NullMessageCountsAsEmpty)
{
    EXPECT_EQ(TextOf(FullHeader(), nullptr), TextOf(FullHeader(), L""));
}

TEST(AuditAttachment, IsAllZeroWithoutALogFile)
{
    tagATTACHEDEVENT attachment;
    std::memset(&attachment, 0x5A, sizeof attachment);
    const tagATTACHEDEVENT zero = {};

    EXPECT_EQ(signutils::FillAttachment(attachment, ""), 0U);
    EXPECT_EQ(std::memcmp(&attachment, &zero, sizeof zero), 0);
}

TEST(AuditAttachment, NamesTheLogFileAndItsKind)
{
    tagATTACHEDEVENT attachment;
    std::memset(&attachment, 0x5A, sizeof attachment);

    EXPECT_EQ(signutils::FillAttachment(attachment, "host.log"), 1U);
    EXPECT_EQ(attachment.reserved, 0U);
    EXPECT_STREQ(attachment.kind, "LOG");
    EXPECT_STREQ(attachment.path, "host.log");
}

TEST(AuditAttachment, PathOf259CharactersIsKeptAndALongerOneCut)
{
    tagATTACHEDEVENT attachment;
    EXPECT_EQ(signutils::FillAttachment(attachment, std::string(259, 'p').c_str()), 1U);
    EXPECT_EQ(attachment.path, std::string(259, 'p'));
    EXPECT_EQ(signutils::FillAttachment(attachment, (std::string(259, 'p') + "qq").c_str()), 1U);
    EXPECT_EQ(attachment.path, std::string(259, 'p'));
}

class AuditEvent : public SessionTest
{
};

TEST_F(AuditEvent, IsWrittenWithItsSourceLevelAndText)
{
    SignUtils session;
    Prepare(session);
    session.LogEvent(2, L"the message");

    const auto journal = ReadJournal(m_database);
    ASSERT_EQ(journal.size(), 1U);
    EXPECT_EQ(journal[0].source, L"RULSGN");
    EXPECT_EQ(journal[0].level, L"2");
    EXPECT_EQ(journal[0].text,
              L"[SIGN_RULES]\r\nMode:" + ModeName(355) +
                  L"\r\nProtocol:Test protocol\r\nEntit\u00e9:PARTNER1\r\nClient:CLIENT1 \r\n"
                  L"Service:SERVICE1\r\nIdFichier=7\r\nOrderId=ORDER0001 \r\n\r\nthe message");
    EXPECT_FALSE(journal[0].aux1.has_value());
    EXPECT_FALSE(journal[0].aux2.has_value());
}

TEST_F(AuditEvent, RequesterSideIsNamedAsItsMode)
{
    SignUtils session;
    Prepare(session, 0);
    session.LogEvent(0, L"");

    EXPECT_THAT(ReadJournal(m_database).at(0).text,
                HasSubstr(L"\r\nMode:" + ModeName(356) + L"\r\n"));
}

TEST_F(AuditEvent, EmptyRequestReferenceIsNull)
{
    SignUtils session;
    Prepare(session);
    session.LogEvent(0, L"");
    session.SetRefRequest("");
    session.LogEvent(0, L"");
    session.SetRefRequest(nullptr);
    session.LogEvent(0, L"");

    for (const JournalEntry& entry : ReadJournal(m_database))
    {
        EXPECT_FALSE(entry.reference.has_value());
    }
}

TEST_F(AuditEvent, RequestReferenceIsWritten)
{
    SignUtils session;
    Prepare(session);
    session.SetRefRequest("REQ-1");
    session.LogEvent(0, L"");

    EXPECT_EQ(ReadJournal(m_database).at(0).reference, L"REQ-1");
}

TEST_F(AuditEvent, LogFileIsAttached)
{
    SignUtils session(nullptr, "host.log");
    Prepare(session);
    session.LogEvent(0, L"");

    const JournalEntry entry = ReadJournal(m_database).at(0);
    EXPECT_EQ(entry.attachKind, L"LOG");
    EXPECT_EQ(entry.attachPath, L"host.log");
}

TEST_F(AuditEvent, NothingIsAttachedWithoutALogFile)
{
    SignUtils session;
    Prepare(session);
    session.LogEvent(0, L"");

    const JournalEntry entry = ReadJournal(m_database).at(0);
    EXPECT_EQ(entry.attachKind, L"");
    EXPECT_EQ(entry.attachPath, L"");
}

TEST_F(AuditEvent, JournalClientIsMadeAndConnectedOnlyOnce)
{
    SignUtils session;
    Prepare(session);
    session.LogEvent(0, L"first");
    const TestDatabase other;
    session.SetConnexionString(other.ConnexionString().c_str());
    session.LogEvent(0, L"second");

    const auto journal = ReadJournal(m_database);
    ASSERT_EQ(journal.size(), 2U);
    EXPECT_EQ(MessageOf(journal[0]), L"first");
    EXPECT_EQ(MessageOf(journal[1]), L"second");
}

TEST_F(AuditEvent, ClientThatCouldNotConnectIsNeverConnectedAgain)
{
    SignUtils session;
    Prepare(session);
    session.SetConnexionString("Driver=no such driver");
    session.LogEvent(0, L"first");
    session.SetConnexionString(m_database.ConnexionString().c_str());
    session.LogEvent(0, L"second");

    EXPECT_TRUE(ReadJournal(m_database).empty());
    EXPECT_FALSE(FilesBelow(SpoolFolder()).empty());
}

TEST_F(AuditEvent, JournalThatCannotBeReachedIsNoErrorForTheHost)
{
    SignUtils session;
    EXPECT_NO_THROW(session.LogEvent(0, L"without any connection text"));
    session.SetConnexionString("Driver=no such driver");
    SignUtils refused;
    refused.SetConnexionString("Driver=no such driver");
    EXPECT_NO_THROW(refused.LogEvent(0, L"connection refused"));
}

TEST_F(AuditEvent, TableThatCannotBeWrittenIsNoErrorForTheHost)
{
    m_database.Execute(L"DROP TABLE EVT_JOURNAL");
    SignUtils session;
    Prepare(session);
    EXPECT_NO_THROW(session.LogEvent(0, L"no table"));
}

TEST_F(AuditEvent, MessageIsTracedUnderItsLabel)
{
    TraceFile trace;
    SignUtils session(trace.Handle(), nullptr);
    Prepare(session);
    session.LogEvent(0, L"caf\u00e9");

    EXPECT_TRUE(HasTraceLine(trace.Close(), "******* AUDIT", "caf\xC3\xA9"));
}

TEST_F(AuditEvent, WithoutAClientNothingIsWrittenButTheTrace)
{
    TraceFile trace;
    SignUtils session(trace.Handle(), nullptr);
    Prepare(session);
    {
        const FailNextAllocation failure; // that of the client
        session.LogEvent(0, L"lost");
        EXPECT_TRUE(failure.WasUsed());
    }
    EXPECT_TRUE(ReadJournal(m_database).empty());
    EXPECT_TRUE(FilesBelow(SpoolFolder()).empty());

    session.LogEvent(0, L"kept");
    EXPECT_EQ(ReadJournal(m_database).size(), 1U);
    EXPECT_TRUE(HasTraceLine(trace.Close(), "******* AUDIT", "lost"));
}

TEST_F(AuditEvent, NullMessageIsJournalledAsAnEmptyOne)
{
    SignUtils session;
    Prepare(session);
    session.LogEvent(0, nullptr);

    EXPECT_EQ(MessageOf(ReadJournal(m_database).at(0)), L"");
}

TEST_F(AuditEvent, HostsOwnEventsDoNotChangeTheLastCheck)
{
    SignUtils session;
    Prepare(session);
    session.LogEvent(0, L"before any check");

    EXPECT_EQ(session.GetLastCheck().journal, JournalState::NotDue);
}

} // namespace
