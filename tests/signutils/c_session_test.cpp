#include "tests/signutils/c_handles.h"
#include "tests/signutils/session_fixture.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <memory>
#include <string>

using namespace testing_support;
using ::testing::HasSubstr;

namespace
{

// What a session holds is seen in the events that it journals.
class CSessionLife : public SessionTest
{
protected:
    JournalEntry Event(SignUtilsSession* session)
    {
        EXPECT_EQ(SignUtilsLogEvent(session, 1, "meßage \u0141"), SIGNUTILS_OK);
        const auto journal = ReadJournal(m_database);
        EXPECT_FALSE(journal.empty());
        return journal.empty() ? JournalEntry() : journal.back();
    }
};

TEST_F(CSessionLife, SettingsReachTheJournalInWindows1252)
{
    const CSession session;
    PrepareC(session, m_database.ConnexionString());
    ASSERT_EQ(
        SignUtilsSetContractInfo(session, 1, 9, "ÉTÉ_8\u20AC12", "SERVICE1", "CLIENT1", 1, nullptr),
        SIGNUTILS_OK);
    ASSERT_EQ(SignUtilsSetRefRequest(session, "request é"), SIGNUTILS_OK);
    ASSERT_EQ(SignUtilsSetIdFileVfs(session, 0xFFFFFFFF), SIGNUTILS_OK);

    const JournalEntry entry = Event(session);
    EXPECT_THAT(entry.text, HasSubstr(L"\r\nEntité:ÉTÉ_8\u20AC12\r\n"));
    EXPECT_THAT(entry.text, HasSubstr(L"\r\nProtocol:Test protocol\r\n"));
    EXPECT_THAT(entry.text, HasSubstr(L"\r\nIdFichier=-1\r\n"));
    EXPECT_EQ(entry.reference, L"request é");
    EXPECT_EQ(entry.level, L"1");
    EXPECT_EQ(MessageOf(entry), L"meßage \u0141");
}

TEST_F(CSessionLife, RefusedSettingLeavesTheSettingsBefore)
{
    const CSession session;
    PrepareC(session, m_database.ConnexionString());
    EXPECT_EQ(
        SignUtilsSetContractInfo(session, 2, 10, "PARTNER2", "SERVICE2", "CLIENT_TOO_LONG", 0, ""),
        SIGNUTILS_TEXT_TOO_LONG);
    const JournalEntry entry = Event(session);
    EXPECT_THAT(entry.text, HasSubstr(L"\r\nProtocol:Test protocol\r\n"));
    EXPECT_THAT(entry.text, HasSubstr(L"\r\nEntité:PARTNER1\r\nClient:CLIENT1 \r\n"));
}

TEST_F(CSessionLife, DistributedSignaturesAreSwitchedOn)
{
    // A second signature is still to come, so that a single one does not fail the rule.
    m_database.Execute(L"UPDATE SSR_CONTRACTCUR SET PROFILE = 1");
    for (const bool veu : {false, true})
    {
        const CSession session;
        PrepareC(session, m_database.ConnexionString());
        if (veu)
        {
            ASSERT_EQ(SignUtilsSetModeVeu(session), SIGNUTILS_OK);
        }
        std::uint32_t verdict = 4711;
        ASSERT_EQ(SignUtilsCheckSignRules(session, "order.xml", "Ana Ruiz", &verdict),
                  SIGNUTILS_OK);
        EXPECT_EQ(verdict,
                  static_cast<std::uint32_t>(veu ? SIGNUTILS_ACCEPTED : SIGNUTILS_REFUSED));
    }
}

TEST_F(CSessionLife, LogFileIsAttachedToEvents)
{
    SignUtilsSession* handle = nullptr;
    ASSERT_EQ(SignUtilsCreate(nullptr, "/var/log/hôte.log", &handle), SIGNUTILS_OK);
    const CSession session(handle);
    PrepareC(session, m_database.ConnexionString());
    const JournalEntry entry = Event(session);
    EXPECT_EQ(entry.attachKind, L"LOG");
    EXPECT_EQ(entry.attachPath, L"/var/log/hôte.log");
}

TEST_F(CSessionLife, TraceIsWrittenUntilItIsClosed)
{
    const std::string path = m_folder.Path("trace.txt");
    SignUtilsTrace* trace = nullptr;
    ASSERT_EQ(SignUtilsTraceOpen(path.c_str(), &trace), SIGNUTILS_OK);
    {
        SignUtilsSession* handle = nullptr;
        ASSERT_EQ(SignUtilsCreate(trace, nullptr, &handle), SIGNUTILS_OK);
        const CSession session(handle);
        PrepareC(session, m_database.ConnexionString());
        std::uint32_t verdict = 4711;
        ASSERT_EQ(SignUtilsCheckSignRules(session, "order.xml", "Ana Ruiz", &verdict),
                  SIGNUTILS_OK);
    }
    SignUtilsTraceClose(trace);
    const std::string text = ReadWholeFile(path);
    EXPECT_THAT(text, HasSubstr("CHECK SIGNATURES RULES"));
    EXPECT_TRUE(HasTraceLine(text, "Signers", "Ana Ruiz")) << text;
}

TEST_F(CSessionLife, TraceThatCannotBeOpenedSaysWhy)
{
    SignUtilsTrace* trace = nullptr;
    EXPECT_EQ(SignUtilsTraceOpen(m_folder.Path("nowhere/trace.txt").c_str(), &trace),
              SIGNUTILS_FAILED);
    EXPECT_EQ(trace, nullptr);
    EXPECT_EQ(ThreadErrorText(),
              "path: the trace file cannot be opened for appending: path not found (system error "
              "3). Check that its folder exists and is writable.");
}

TEST_F(CSessionLife, CopyHasTheSettingsAndOutlivesItsOrigin)
{
    CSession origin;
    PrepareC(origin, m_database.ConnexionString());
    std::uint32_t verdict = 4711;
    ASSERT_EQ(SignUtilsCheckSignRules(origin, "order.xml", "Ana Ruiz", &verdict), SIGNUTILS_OK);

    SignUtilsSession* handle = nullptr;
    ASSERT_EQ(SignUtilsCopy(origin, &handle), SIGNUTILS_OK);
    const CSession copy(handle);
    origin.Destroy();
    EXPECT_EQ(LastCheckOf(copy).verdict, static_cast<std::uint32_t>(SIGNUTILS_ACCEPTED));
    // The connection of the check lives on, so holders are found.
    std::int32_t found = 0;
    const char* first = nullptr;
    const char* last = nullptr;
    ASSERT_EQ(SignUtilsGetSignerNames(copy, "ana ruiz", &found, &first, &last), SIGNUTILS_OK);
    EXPECT_EQ(found, 1);
    EXPECT_STREQ(first, "Ana");
    EXPECT_STREQ(last, "Ruiz");
    EXPECT_THAT(Event(copy).text, HasSubstr(L"\r\nEntité:PARTNER1\r\n"));
}

TEST_F(CSessionLife, SettingsOfACopyAreItsOwn)
{
    const CSession origin;
    PrepareC(origin, m_database.ConnexionString());
    SignUtilsSession* handle = nullptr;
    ASSERT_EQ(SignUtilsCopy(origin, &handle), SIGNUTILS_OK);
    const CSession copy(handle);
    ASSERT_EQ(SignUtilsSetRefRequest(copy, "of the copy"), SIGNUTILS_OK);
    EXPECT_EQ(Event(copy).reference, L"of the copy");
    EXPECT_EQ(Event(origin).reference, std::nullopt);
}

TEST_F(CSessionLife, AssignedSessionTakesOverSettingsAndLetsGoOfItsOwn)
{
    const CSession target;
    PrepareC(target, "Driver=SQLite3;Database=" + m_folder.Path("elsewhere.db"));
    {
        const CSession source;
        PrepareC(source, m_database.ConnexionString());
        ASSERT_EQ(SignUtilsSetRefRequest(source, "of the source"), SIGNUTILS_OK);
        ASSERT_EQ(SignUtilsAssign(target, source), SIGNUTILS_OK);
    }
    EXPECT_EQ(Event(target).reference, L"of the source");
}

TEST_F(CSessionLife, AssigningASessionToItselfChangesNothing)
{
    const CSession session;
    PrepareC(session, m_database.ConnexionString());
    ASSERT_EQ(SignUtilsAssign(session, session), SIGNUTILS_OK);
    EXPECT_THAT(Event(session).text, HasSubstr(L"\r\nEntité:PARTNER1\r\n"));
}

TEST_F(CSessionLife, ProtocolsAreNamedListedAndRenamed)
{
    const CSession session;
    const char* name = nullptr;
    ASSERT_EQ(SignUtilsRegisterProtocol(4711, "Protocôle"), SIGNUTILS_OK);
    ASSERT_EQ(SignUtilsGetProtocolName(session, 4711, &name), SIGNUTILS_OK);
    EXPECT_STREQ(name, "Protocôle");

    std::int32_t found = 1;
    std::uint32_t number = 0;
    std::uint32_t before = 0;
    std::int32_t count = 0;
    for (; found == 1; ++count)
    {
        before = number;
        ASSERT_EQ(SignUtilsGetProtocolAt(session, count, &found, &number, &name), SIGNUTILS_OK);
        EXPECT_TRUE(found == 0 || number > before);
        EXPECT_EQ(found == 0, std::string(name).empty());
    }
    EXPECT_GT(count, 20);
    EXPECT_EQ(before, 4711U); // the largest number stands last
    EXPECT_EQ(number, 0U);
    ASSERT_EQ(SignUtilsGetProtocolAt(session, -1, &found, &number, &name), SIGNUTILS_OK);
    EXPECT_EQ(found, 0);

    ASSERT_EQ(SignUtilsRegisterProtocol(4711, nullptr), SIGNUTILS_OK);
    ASSERT_EQ(SignUtilsGetProtocolName(session, 4711, &name), SIGNUTILS_OK);
    EXPECT_STREQ(name, "");
}

TEST_F(CSessionLife, ComIsInitialisedOnceAndLeftInTheOtherKindOfApartment)
{
    ASSERT_EQ(SignUtilsComInitialize(SIGNUTILS_COM_SINGLE_THREADED), SIGNUTILS_OK);
    EXPECT_EQ(SignUtilsComInitialize(SIGNUTILS_COM_SINGLE_THREADED), SIGNUTILS_OK);
    EXPECT_EQ(SignUtilsComInitialize(SIGNUTILS_COM_MULTITHREADED), SIGNUTILS_OTHER_APARTMENT);
    EXPECT_EQ(ThreadErrorText(),
              "This thread has COM already, in the other kind of apartment. It can be used as it "
              "is.");
    SignUtilsComUninitialize();
    SignUtilsComUninitialize();
    EXPECT_EQ(SignUtilsComInitialize(SIGNUTILS_COM_MULTITHREADED), SIGNUTILS_OK);
    SignUtilsComUninitialize();
}

} // namespace
