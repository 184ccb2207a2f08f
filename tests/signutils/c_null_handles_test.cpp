#include "tests/signutils/c_handles.h"
#include "tests/signutils/session_fixture.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <cstring>
#include <string>

// Handles and places for results that are missing: refused by name, and results hold what a failed
// call gives.

using namespace testing_support;
using ::testing::StartsWith;

namespace
{

constexpr std::int32_t kUnset = 4711;

void ExpectNoSession(SignUtilsStatus status)
{
    EXPECT_EQ(status, SIGNUTILS_NULL_ARGUMENT);
    EXPECT_EQ(ThreadErrorText(), "session: is null. Give the handle of a session.");
    SignUtilsRegisterProtocol(4711, nullptr); // clears the text
}

TEST(CNullSession, IsRefusedByEverySetting)
{
    ExpectNoSession(SignUtilsSetContractInfo(nullptr, 1, 9, "P", "S", "C", 1, ""));
    ExpectNoSession(SignUtilsSetFormatInfo(nullptr, "", "", ""));
    ExpectNoSession(SignUtilsSetAmountInfo(nullptr, 1.0, 1.0, ""));
    ExpectNoSession(SignUtilsSetMessageInfo(nullptr, "", "", "", ""));
    ExpectNoSession(SignUtilsSetPSRWarning(nullptr, ""));
    ExpectNoSession(SignUtilsSetConnexionString(nullptr, ""));
    ExpectNoSession(SignUtilsSetIdFileVfs(nullptr, 1));
    ExpectNoSession(SignUtilsSetModeVeu(nullptr));
    ExpectNoSession(SignUtilsSetRefRequest(nullptr, ""));
}

TEST(CNullSession, IsRefusedByEveryOperationWhichGivesWhatAFailedCallGives)
{
    std::uint32_t verdict = kUnset;
    const char* one = nullptr;
    const char* two = nullptr;
    ExpectNoSession(SignUtilsCheckSignRules(nullptr, "", "", &verdict));
    EXPECT_EQ(verdict, SIGNUTILS_REFUSED);
    verdict = kUnset;
    ExpectNoSession(
        SignUtilsCheckSignRulesFor(nullptr, "", "", 1.0, 1.0, "", &verdict, &one, &two));
    EXPECT_EQ(verdict, SIGNUTILS_REFUSED);
    EXPECT_STREQ(one, "");
    EXPECT_STREQ(two, "");

    one = nullptr;
    ExpectNoSession(SignUtilsGetExtraInfo(nullptr, &one));
    EXPECT_STREQ(one, "");
    one = nullptr;
    ExpectNoSession(SignUtilsGetPSRWarning(nullptr, &one));
    EXPECT_STREQ(one, "");
    one = nullptr;
    ExpectNoSession(SignUtilsGeneratePSR(nullptr, "", "", "", "", 0, "", "", 0, -1.0, &one));
    EXPECT_STREQ(one, "");
    ExpectNoSession(SignUtilsExecWorkFmt(nullptr, ""));
    ExpectNoSession(SignUtilsLogEvent(nullptr, 0, ""));

    std::int32_t found = kUnset;
    one = two = nullptr;
    ExpectNoSession(SignUtilsGetSignerNames(nullptr, "", &found, &one, &two));
    EXPECT_EQ(found, 0);
    EXPECT_STREQ(one, "");
    EXPECT_STREQ(two, "");
    one = nullptr;
    ExpectNoSession(SignUtilsGetProtocolName(nullptr, 9, &one));
    EXPECT_STREQ(one, "");
    std::uint32_t protocol = kUnset;
    found = kUnset;
    ExpectNoSession(SignUtilsGetProtocolAt(nullptr, 0, &found, &protocol, &one));
    EXPECT_EQ(found, 0);
    EXPECT_EQ(protocol, 0U);
}

TEST(CNullSession, IsRefusedWithRecordsThatHoldNothing)
{
    SignUtilsCheck check;
    std::memset(&check, 0x7F, sizeof check);
    check.size = sizeof check;
    ExpectNoSession(SignUtilsGetLastCheck(nullptr, &check));
    EXPECT_EQ(check.ran, 0);
    EXPECT_EQ(check.verdict, static_cast<std::uint32_t>(SIGNUTILS_REFUSED));
    EXPECT_EQ(check.totalAmount, 0.0);
    EXPECT_STREQ(check.problem, "");
    EXPECT_STREQ(check.reportProblem, "");

    const CSigners signers;
    SignUtilsHolder holder;
    std::memset(&holder, 0x7F, sizeof holder);
    holder.size = sizeof holder;
    ExpectNoSession(SignUtilsGetSignerInfos(nullptr, "", signers, &holder));
    EXPECT_EQ(holder.found, 0);
    EXPECT_EQ(holder.notOpposition, 0);
    EXPECT_STREQ(holder.certificate, "");

    SignUtilsAmounts amounts;
    std::memset(&amounts, 0x7F, sizeof amounts);
    amounts.size = sizeof amounts;
    ExpectNoSession(SignUtilsGetMaxAmountFile(nullptr, "", &amounts));
    EXPECT_EQ(amounts.totalAmount, 0.0);
    EXPECT_STREQ(amounts.currency, "");

    SignUtilsHandOff handOff;
    std::memset(&handOff, 0x7F, sizeof handOff);
    handOff.size = sizeof handOff;
    ExpectNoSession(SignUtilsAddPaymentStatusReport(nullptr, "", "", "", "", "", &handOff));
    EXPECT_EQ(handOff.result, 0x00C90004U);
    EXPECT_EQ(handOff.fileId, 0U);
}

TEST(CNullSession, IsRefusedWhereSessionsAreCopied)
{
    const CSession session;
    SignUtilsSession* copy = session;
    ExpectNoSession(SignUtilsCopy(nullptr, &copy));
    EXPECT_EQ(copy, nullptr);
    ExpectNoSession(SignUtilsAssign(nullptr, session));
    EXPECT_EQ(SignUtilsAssign(session, nullptr), SIGNUTILS_NULL_ARGUMENT);
    EXPECT_EQ(session.Error(), "source: is null. Give the handle of a session.");
}

TEST(CNullSession, IsIgnoredByWhatReleases)
{
    SignUtilsDestroy(nullptr);
    SignUtilsSignersDestroy(nullptr);
    SignUtilsTraceClose(nullptr);
}

TEST(CNullSigners, AreRefused)
{
    std::int32_t count = kUnset;
    const char* text = nullptr;
    const std::string expected = "signers: is null. Give the handle of a list of signers.";
    EXPECT_EQ(SignUtilsSignersAdd(nullptr, ""), SIGNUTILS_NULL_ARGUMENT);
    EXPECT_EQ(ThreadErrorText(), expected);
    EXPECT_EQ(SignUtilsSignersCount(nullptr, &count), SIGNUTILS_NULL_ARGUMENT);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(SignUtilsSignersGet(nullptr, 0, &text, &text, &text), SIGNUTILS_NULL_ARGUMENT);
    EXPECT_STREQ(text, "");

    const CSession session;
    SignUtilsHolder holder = {};
    holder.size = sizeof holder;
    EXPECT_EQ(SignUtilsGetSignerInfos(session, "H1", nullptr, &holder), SIGNUTILS_NULL_ARGUMENT);
    EXPECT_EQ(session.Error(), expected);
}

class CNullResults : public SessionTest
{
protected:
    CNullResults() { PrepareC(m_session, m_database.ConnexionString()); }
    ~CNullResults() override
    {
        // Refused before anything was done.
        EXPECT_TRUE(m_database.Query(L"SELECT STATUT FROM HST_SIGNRULES").empty());
        EXPECT_TRUE(FilesBelow(HandOffFolder()).empty());
    }

    void ExpectRefused(SignUtilsStatus status, const std::string& name)
    {
        EXPECT_EQ(status, SIGNUTILS_NULL_ARGUMENT) << name;
        EXPECT_THAT(m_session.Error(), StartsWith(name + ": is null. Give the address of the re"));
    }

    CSession m_session;
};

TEST_F(CNullResults, AreRefusedBeforeTheWorkIsDone)
{
    std::uint32_t verdict = kUnset;
    std::int32_t found = kUnset;
    const char* text = nullptr;
    const CSigners signers;
    ExpectRefused(SignUtilsCheckSignRules(m_session, "f", "Ana Ruiz", nullptr), "verdict");
    ExpectRefused(
        SignUtilsCheckSignRulesFor(m_session, "Ana Ruiz", "f", 1.0, 1.0, "", nullptr, &text, &text),
        "verdict");
    ExpectRefused(SignUtilsCheckSignRulesFor(m_session, "Ana Ruiz", "f", 1.0, 1.0, "", &verdict,
                                             nullptr, &text),
                  "reasonCode");
    EXPECT_EQ(verdict, static_cast<std::uint32_t>(SIGNUTILS_REFUSED));
    ExpectRefused(SignUtilsCheckSignRulesFor(m_session, "Ana Ruiz", "f", 1.0, 1.0, "", &verdict,
                                             &text, nullptr),
                  "reasonText");
    ExpectRefused(SignUtilsGetLastCheck(m_session, nullptr), "check");
    ExpectRefused(SignUtilsGetExtraInfo(m_session, nullptr), "extraInfo");
    ExpectRefused(SignUtilsGetPSRWarning(m_session, nullptr), "report");
    ExpectRefused(SignUtilsGetSignerNames(m_session, "", nullptr, &text, &text), "found");
    ExpectRefused(SignUtilsGetSignerNames(m_session, "", &found, nullptr, &text), "firstName");
    ExpectRefused(SignUtilsGetSignerNames(m_session, "", &found, &text, nullptr), "lastName");
    ExpectRefused(SignUtilsGetSignerInfos(m_session, "", signers, nullptr), "holder");
    ExpectRefused(SignUtilsGetMaxAmountFile(m_session, "f", nullptr), "amounts");
    ExpectRefused(SignUtilsGeneratePSR(m_session, "", "", "", "", 0, "", "", 0, -1.0, nullptr),
                  "report");
    ExpectRefused(
        SignUtilsAddPaymentStatusReport(m_session, "<a/>", "psr", "STATUS", "P", "", nullptr),
        "handOff");
    ExpectRefused(SignUtilsCopy(m_session, nullptr), "copy");
    ExpectRefused(SignUtilsGetProtocolName(m_session, 9, nullptr), "longName");
    ExpectRefused(SignUtilsGetProtocolAt(m_session, 0, nullptr, &verdict, &text), "found");
    ExpectRefused(SignUtilsGetProtocolAt(m_session, 0, &found, nullptr, &text), "protocol");
    ExpectRefused(SignUtilsGetProtocolAt(m_session, 0, &found, &verdict, nullptr), "longName");
}

TEST_F(CNullResults, AreRefusedWithoutASession)
{
    EXPECT_EQ(SignUtilsCreate(nullptr, nullptr, nullptr), SIGNUTILS_NULL_ARGUMENT);
    EXPECT_THAT(ThreadErrorText(), StartsWith("session: is null"));
    EXPECT_EQ(SignUtilsSignersCreate(nullptr), SIGNUTILS_NULL_ARGUMENT);
    EXPECT_THAT(ThreadErrorText(), StartsWith("signers: is null"));
    EXPECT_EQ(SignUtilsTraceOpen("", nullptr), SIGNUTILS_NULL_ARGUMENT);
    EXPECT_THAT(ThreadErrorText(), StartsWith("trace: is null"));

    const CSigners signers;
    const char* text = nullptr;
    EXPECT_EQ(SignUtilsSignersCount(signers, nullptr), SIGNUTILS_NULL_ARGUMENT);
    EXPECT_THAT(ThreadErrorText(), StartsWith("count: is null"));
    EXPECT_EQ(SignUtilsSignersGet(signers, 0, nullptr, &text, &text), SIGNUTILS_NULL_ARGUMENT);
    EXPECT_THAT(ThreadErrorText(), StartsWith("certificate: is null"));
    EXPECT_EQ(SignUtilsSignersGet(signers, 0, &text, nullptr, &text), SIGNUTILS_NULL_ARGUMENT);
    EXPECT_THAT(ThreadErrorText(), StartsWith("firstName: is null"));
    EXPECT_EQ(SignUtilsSignersGet(signers, 0, &text, &text, nullptr), SIGNUTILS_NULL_ARGUMENT);
    EXPECT_THAT(ThreadErrorText(), StartsWith("lastName: is null"));
}

} // namespace
