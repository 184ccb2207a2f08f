#include "tests/signutils/invalid_parameters.h"
#include "tests/signutils/session_fixture.h"
#include "tests/testing/failing_allocations.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <string>

using namespace testing_support;
using ::testing::HasSubstr;

namespace
{

// What the session holds is seen in the header of the event that it journals.
class SessionSettings : public SessionTest
{
protected:
    std::wstring AuditTextOf(SignUtils& session)
    {
        session.SetConnexionString(m_database.ConnexionString().c_str());
        session.LogEvent(0, L"message");
        const auto journal = ReadJournal(m_database);
        EXPECT_FALSE(journal.empty());
        return journal.empty() ? L"" : journal.back().text;
    }
};

int SetPartner(SignUtils& session, const char* partner)
{
    return session.SetContractInfo(1, 9, partner, "SERVICE1", "CLIENT1", 1, "");
}

int SetService(SignUtils& session, const char* service)
{
    return session.SetContractInfo(1, 9, "PARTNER1", service, "CLIENT1", 1, "");
}

int SetClient(SignUtils& session, const char* client)
{
    return session.SetContractInfo(1, 9, "PARTNER1", "SERVICE1", client, 1, "");
}

TEST_F(SessionSettings, SettersAnswerOneWhateverTheyAreGiven)
{
    const CountInvalidParameters handler;
    SignUtils session;
    EXPECT_EQ(session.SetContractInfo(1, 9, "P", "S", "C", 1, "T"), 1);
    EXPECT_EQ(session.SetContractInfo(1, 9, "more than eight", "S", "C", 1, "T"), 1);
    EXPECT_EQ(session.SetContractInfo(1, 9, nullptr, nullptr, nullptr, 0, nullptr), 1);
    EXPECT_EQ(session.SetFormatInfo("A", "B", "C"), 1);
    EXPECT_EQ(session.SetFormatInfo(nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(session.SetAmountInfo(-1.0, 2.0, nullptr), 1);
    EXPECT_EQ(session.SetMessageInfo(nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(session.SetPSRWarning("more than eight"), 1);
    EXPECT_EQ(session.SetPSRWarning(nullptr), 1);
}

TEST_F(SessionSettings, IdentifiersOfEightCharactersAreStoredWhole)
{
    const CountInvalidParameters handler;
    SignUtils session;
    session.SetContractInfo(1, 9, "PARTNER8", "SERVICE8", "CLIENT_8", 1, "");

    const std::wstring text = AuditTextOf(session);
    EXPECT_THAT(text, HasSubstr(L"\r\nEntité:PARTNER8\r\n"));
    EXPECT_THAT(text, HasSubstr(L"\r\nClient:CLIENT_8\r\n"));
    EXPECT_THAT(text, HasSubstr(L"\r\nService:SERVICE8\r\n"));
    EXPECT_EQ(handler.Calls(), 0);
}

TEST_F(SessionSettings, PartnerOfNineCharactersIsRefusedNotCut)
{
    const CountInvalidParameters handler;
    SignUtils session;
    SetPartner(session, "PARTNER89");

    EXPECT_EQ(handler.Calls(), 1);
    const std::wstring text = AuditTextOf(session);
    EXPECT_THAT(text, HasSubstr(L"\r\nEntité:        \r\n"));
    EXPECT_THAT(text, HasSubstr(L"\r\nService:SERVICE1\r\n"));
}

TEST_F(SessionSettings, ServiceOfNineCharactersIsRefusedNotCut)
{
    const CountInvalidParameters handler;
    SignUtils session;
    SetService(session, "SERVICE89");

    EXPECT_EQ(handler.Calls(), 1);
    EXPECT_THAT(AuditTextOf(session), HasSubstr(L"\r\nService:        \r\n"));
}

TEST_F(SessionSettings, ClientOfNineCharactersIsRefusedNotCut)
{
    const CountInvalidParameters handler;
    SignUtils session;
    SetClient(session, "CLIENT_89");

    EXPECT_EQ(handler.Calls(), 1);
    EXPECT_THAT(AuditTextOf(session), HasSubstr(L"\r\nClient:        \r\n"));
}

TEST_F(SessionSettings, RefusedTextEmptiesWhatWasThereBefore)
{
    const CountInvalidParameters handler;
    SignUtils session;
    SetPartner(session, "PARTNER1");
    SetPartner(session, "PARTNER89");

    EXPECT_THAT(AuditTextOf(session), HasSubstr(L"\r\nEntité:        \r\n"));
}

TEST_F(SessionSettings, NullIdentifiersAreRefusedAndLeftEmpty)
{
    const CountInvalidParameters handler;
    SignUtils session;
    session.SetContractInfo(1, 9, nullptr, nullptr, nullptr, 1, nullptr);

    EXPECT_EQ(handler.Calls(), 4);
    const std::wstring text = AuditTextOf(session);
    EXPECT_THAT(text, HasSubstr(L"\r\nEntité:        \r\nClient:        \r\nService:        \r\n"));
}

TEST_F(SessionSettings, HandOffTargetOf260CharactersIsTakenAndOf261Refused)
{
    const CountInvalidParameters handler;
    SignUtils session;
    session.SetContractInfo(1, 9, "P", "S", "C", 1, std::string(260, 'x').c_str());
    EXPECT_EQ(handler.Calls(), 0);
    session.SetContractInfo(1, 9, "P", "S", "C", 1, std::string(261, 'x').c_str());
    EXPECT_EQ(handler.Calls(), 1);
}

TEST_F(SessionSettings, ReportServiceOfNineCharactersIsRefusedSoNoReportIsMade)
{
    const CountInvalidParameters handler;
    SignUtils session;
    Prepare(session);
    session.SetAmountInfo(1000.01, 1.00, "EUR");
    session.SetPSRWarning("STATUS_89");

    EXPECT_EQ(handler.Calls(), 1);
    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);
    EXPECT_TRUE(FilesBelow(HandOffFolder()).empty());
    EXPECT_TRUE(session.GetPSRWarning().IsEmpty());
}

TEST_F(SessionSettings, ReportServiceOfEightCharactersIsStoredWhole)
{
    SignUtils session;
    Prepare(session);
    session.SetAmountInfo(1000.01, 1.00, "EUR");
    session.SetPSRWarning("STATUS_8");

    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);
    EXPECT_THAT(session.GetExtraInfo().SafeGetString(), HasSubstr("PSR Generated in STATUS_8="));
}

TEST_F(SessionSettings, ProtocolNameOf63CharactersIsStoredWhole)
{
    const CountInvalidParameters handler;
    const std::string name(63, 'n');
    TProtocolCatalogue::Register(4711, name.c_str());
    SignUtils session;
    session.SetContractInfo(1, 4711, "P", "S", "C", 1, "");
    TProtocolCatalogue::Register(4711, nullptr);

    EXPECT_EQ(handler.Calls(), 0);
    EXPECT_THAT(AuditTextOf(session),
                HasSubstr(L"\r\nProtocol:" + std::wstring(63, L'n') + L"\r\n"));
}

TEST_F(SessionSettings, ProtocolNameOf64CharactersIsRefusedNotCut)
{
    const CountInvalidParameters handler;
    const std::string name(64, 'n');
    TProtocolCatalogue::Register(4711, name.c_str());
    SignUtils session;
    session.SetContractInfo(1, 4711, "P", "S", "C", 1, "");
    TProtocolCatalogue::Register(4711, nullptr);

    EXPECT_EQ(handler.Calls(), 1);
    EXPECT_THAT(AuditTextOf(session), HasSubstr(L"\r\nProtocol:\r\n"));
}

TEST_F(SessionSettings, UnknownProtocolHasAnEmptyName)
{
    SignUtils session;
    session.SetContractInfo(1, 987654321, "P", "S", "C", 1, "");

    EXPECT_THAT(AuditTextOf(session), HasSubstr(L"\r\nProtocol:\r\n"));
}

TEST_F(SessionSettings, ProtocolNumberIsItsLow32Bits)
{
    SignUtils session;
    const auto beyond32Bits = static_cast<unsigned long>(0x100000009ULL);
    session.SetContractInfo(1, beyond32Bits, "P", "S", "C", 1, "");

    EXPECT_THAT(AuditTextOf(session), HasSubstr(L"\r\nProtocol:Test protocol\r\n"));
}

TEST_F(SessionSettings, AmountsGivenAfterTheFormatAreUsed)
{
    SignUtils session;
    Prepare(session);
    session.SetFormatInfo("ISO20022", "pain.001", "");
    session.SetAmountInfo(1000.01, 1.00, "EUR");

    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);
    EXPECT_EQ(session.GetLastCheck().totalAmount, 1000.01);
    EXPECT_TRUE(session.GetLastCheck().amountsKnown);
}

TEST_F(SessionSettings, FormatGivenAfterTheAmountsMakesThemWorkedOutAgain)
{
    SignUtils session;
    Prepare(session);
    session.SetAmountInfo(1000.01, 1.00, "EUR");
    session.SetFormatInfo("", "", "");

    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kSuccess);
    EXPECT_EQ(session.GetLastCheck().totalAmount, 0.0);
    EXPECT_FALSE(session.GetLastCheck().amountsKnown);
}

TEST_F(SessionSettings, FreshSessionHasNoReportWhateverTheReportService)
{
    SignUtils session;
    EXPECT_TRUE(session.GetPSRWarning().IsEmpty());
    session.SetPSRWarning("STATUS");
    EXPECT_TRUE(session.GetPSRWarning().IsEmpty());
    EXPECT_TRUE(session.GetExtraInfo().IsEmpty());
}

TEST_F(SessionSettings, UnusableTraceHandlesChangeNothingElse)
{
    // NOLINTNEXTLINE(performance-no-int-to-ptr): all ones is what a failed open gives elsewhere
    void* const allOnes = reinterpret_cast<void*>(~std::uintptr_t{0});
    for (void* const trace : {static_cast<void*>(nullptr), allOnes})
    {
        SignUtils session(trace, nullptr);
        Prepare(session);
        EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kSuccess);
    }
    const auto rows = m_database.Query(L"SELECT STATUT FROM HST_SIGNRULES");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0], rows[1]);
    const auto journal = ReadJournal(m_database);
    ASSERT_EQ(journal.size(), 2U);
    EXPECT_EQ(journal[0].text, journal[1].text);
}

TEST_F(SessionSettings, WantOfMemoryInATextAssignmentReachesTheHost)
{
    SignUtils session;
    const std::string text(1000, 'x');
    const FailNextAllocation failure;
    EXPECT_THROW(session.SetConnexionString(text.c_str()), std::bad_alloc);
    EXPECT_TRUE(failure.WasUsed());
}

TEST_F(SessionSettings, VersionOfTheLibraryIsThatOfTheHeaders)
{
    EXPECT_STREQ(SignUtilsVersion(), SIGNUTILS_VERSION);
    EXPECT_EQ(std::to_string(SIGNUTILS_VERSION_MAJOR) + "." +
                  std::to_string(SIGNUTILS_VERSION_MINOR) + "." +
                  std::to_string(SIGNUTILS_VERSION_PATCH),
              SIGNUTILS_VERSION);
}

using SessionSettingsDeathTest = SessionSettings;

TEST_F(SessionSettingsDeathTest, TextThatDoesNotFitEndsTheProcessWithoutAHandler)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    SignUtils session;
    EXPECT_DEATH(session.SetPSRWarning("STATUS_89"), "");
    EXPECT_DEATH(SetPartner(session, "PARTNER89"), "");
}

TEST_F(SessionSettingsDeathTest, NullIdentifierEndsTheProcessWithoutAHandler)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    SignUtils session;
    EXPECT_DEATH(session.SetPSRWarning(nullptr), "");
    EXPECT_DEATH(SetClient(session, nullptr), "");
}

} // namespace
