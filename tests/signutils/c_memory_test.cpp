#include "tests/signutils/c_handles.h"
#include "tests/signutils/session_fixture.h"
#include "tests/testing/failing_allocations.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

// Memory that runs out inside the C interface: a code, never an exception, and nothing half done.

using namespace testing_support;
using ::testing::HasSubstr;

namespace
{

constexpr char kLong[] = "a text that is too long to be kept without an allocation";

struct MemoryCase
{
    const char* name;
    std::function<SignUtilsStatus(SignUtilsSession*)> call;
    const char* connexionString = nullptr; ///< null: the test's database
};

void PrintTo(const MemoryCase& memoryCase, std::ostream* stream)
{
    *stream << memoryCase.name;
}

SignUtilsStatus CreateOne(SignUtilsSession*)
{
    SignUtilsSession* created = nullptr;
    const SignUtilsStatus status = SignUtilsCreate(nullptr, kLong, &created);
    EXPECT_EQ(created == nullptr, status != SIGNUTILS_OK);
    SignUtilsDestroy(created);
    return status;
}

SignUtilsStatus CopyOne(SignUtilsSession* session)
{
    SignUtilsSession* copy = nullptr;
    const SignUtilsStatus status = SignUtilsCopy(session, &copy);
    EXPECT_EQ(copy == nullptr, status != SIGNUTILS_OK);
    SignUtilsDestroy(copy);
    return status;
}

SignUtilsStatus FillSigners(SignUtilsSession*)
{
    SignUtilsSigners* signers = nullptr;
    SignUtilsStatus status = SignUtilsSignersCreate(&signers);
    EXPECT_EQ(signers == nullptr, status != SIGNUTILS_OK);
    if (status == SIGNUTILS_OK)
    {
        status = SignUtilsSignersAdd(signers, kLong);
    }
    if (status == SIGNUTILS_OK)
    {
        const char* certificate = nullptr;
        const char* first = nullptr;
        const char* last = nullptr;
        status = SignUtilsSignersGet(signers, 0, &certificate, &first, &last);
        EXPECT_STREQ(certificate, status == SIGNUTILS_OK ? kLong : "");
    }
    SignUtilsSignersDestroy(signers);
    return status;
}

SignUtilsStatus WriteMeasuresNowhere(SignUtilsSession*)
{
    EXPECT_EQ(SignUtilsStartMeasures(), SIGNUTILS_OK);
    return SignUtilsWriteMeasures("no such folder/host.prom");
}

SignUtilsStatus ReadLastCheck(SignUtilsSession* session)
{
    SignUtilsCheck check = {};
    check.size = sizeof check;
    const SignUtilsStatus status = SignUtilsGetLastCheck(session, &check);
    EXPECT_STREQ(check.currency, status == SIGNUTILS_OK ? kLong : "");
    return status;
}

SignUtilsStatus WriteReport(SignUtilsSession* session)
{
    const char* report = nullptr;
    const SignUtilsStatus status =
        SignUtilsGeneratePSR(session, kLong, kLong, kLong, kLong, 0, kLong, kLong, 1, 1.0, &report);
    EXPECT_EQ(*report == '\0', status != SIGNUTILS_OK);
    return status;
}

SignUtilsStatus ReadReport(SignUtilsSession* session)
{
    const char* report = nullptr;
    const SignUtilsStatus status = SignUtilsGetPSRWarning(session, &report);
    EXPECT_EQ(*report == '\0', status != SIGNUTILS_OK);
    return status;
}

// Without a database, so that what fails is the interface's own work.
SignUtilsStatus JudgeRules(SignUtilsSession* session)
{
    std::uint32_t verdict = 4711;
    const char* code = nullptr;
    const char* text = nullptr;
    const SignUtilsStatus status = SignUtilsCheckSignRulesFor(session, kLong, kLong, 1000.01, 1.0,
                                                              kLong, &verdict, &code, &text);
    EXPECT_EQ(verdict, static_cast<std::uint32_t>(SIGNUTILS_REFUSED));
    return status;
}

SignUtilsStatus FindNames(SignUtilsSession* session)
{
    std::int32_t found = 4711;
    const char* first = nullptr;
    const char* last = nullptr;
    const SignUtilsStatus status =
        SignUtilsGetSignerNames(session, "Ana Ruiz", &found, &first, &last);
    EXPECT_EQ(*last != '\0', found == 1) << last; // no half of a holder
    EXPECT_TRUE(status == SIGNUTILS_OK || found == 0);
    return status;
}

SignUtilsStatus ReadProtocols(SignUtilsSession* session)
{
    std::int32_t found = 4711;
    std::uint32_t protocol = 4711;
    const char* name = nullptr;
    SignUtilsStatus status = SignUtilsGetProtocolAt(session, 0, &found, &protocol, &name);
    EXPECT_EQ(found == 1, status == SIGNUTILS_OK);
    EXPECT_EQ(*name != '\0', status == SIGNUTILS_OK);
    if (status == SIGNUTILS_OK)
    {
        status = SignUtilsGetProtocolName(session, 9, &name);
        EXPECT_EQ(*name != '\0', status == SIGNUTILS_OK);
    }
    return status;
}

const MemoryCase kMemoryCases[] = {
    {"Create", CreateOne},
    {"Copy", CopyOne},
    {"Assign", [](SignUtilsSession* s) { return SignUtilsAssign(s, s); }},
    {"SetContractInfo", [](SignUtilsSession* s)
     { return SignUtilsSetContractInfo(s, 1, 9, "PARTNER1", "SERVICE1", "CLIENT1", 1, kLong); }},
    {"SetFormatInfo",
     [](SignUtilsSession* s) { return SignUtilsSetFormatInfo(s, kLong, kLong, kLong); }},
    {"SetAmountInfo",
     [](SignUtilsSession* s) { return SignUtilsSetAmountInfo(s, 1.0, 1.0, kLong); }},
    {"SetMessageInfo",
     [](SignUtilsSession* s) { return SignUtilsSetMessageInfo(s, kLong, kLong, kLong, kLong); }},
    {"SetConnexionString",
     [](SignUtilsSession* s) { return SignUtilsSetConnexionString(s, kLong); }},
    {"SetPSRWarning", [](SignUtilsSession* s) { return SignUtilsSetPSRWarning(s, "STATUS"); }},
    {"SetRefRequest", [](SignUtilsSession* s) { return SignUtilsSetRefRequest(s, kLong); }},
    {"SetIdFileVfs", [](SignUtilsSession* s) { return SignUtilsSetIdFileVfs(s, 1); }},
    {"SetModeVeu", [](SignUtilsSession* s) { return SignUtilsSetModeVeu(s); }},
    {"Signers", FillSigners},
    {"GetLastCheck", ReadLastCheck},
    {"GeneratePSR", WriteReport},
    {"GetPSRWarning", ReadReport},
    {"CheckSignRulesFor", JudgeRules, ""},
    {"GetSignerNames", FindNames},
    {"GetProtocols", ReadProtocols},
    {"LogEvent", [](SignUtilsSession* s) { return SignUtilsLogEvent(s, 0, kLong); }},
    {"WriteMeasures", WriteMeasuresNowhere},
    {"RefusedText", [](SignUtilsSession* s) { return SignUtilsSetRefRequest(s, "\u0141"); }},
};

class CMemory : public SessionTest, public ::testing::WithParamInterface<MemoryCase>
{
protected:
    CMemory()
    {
        PrepareC(m_session, m_database.ConnexionString());
        EXPECT_EQ(SignUtilsSetAmountInfo(m_session, 1000.01, 1.0, kLong), SIGNUTILS_OK);
        EXPECT_EQ(SignUtilsSetPSRWarning(m_session, "STATUS"), SIGNUTILS_OK);
        std::uint32_t verdict = 4711;
        EXPECT_EQ(SignUtilsCheckSignRules(m_session, "order.xml", "Ana Ruiz", &verdict),
                  SIGNUTILS_OK);
        EXPECT_EQ(LastCheckOf(m_session).report, SIGNUTILS_REPORT_HANDED_ON);
        if (GetParam().connexionString != nullptr)
        {
            EXPECT_EQ(SignUtilsSetConnexionString(m_session, GetParam().connexionString),
                      SIGNUTILS_OK);
        }
    }

    /// Whether an allocation was refused.
    template <typename Failure>
    bool CallSparing(unsigned long spared, SignUtilsStatus expected)
    {
        SCOPED_TRACE(spared);
        bool used = true;
        SignUtilsStatus status = SIGNUTILS_UNEXPECTED;
        {
            const Failure failure(spared);
            status = GetParam().call(m_session);
            used = failure.WasUsed();
        }
        // Some failures inside a check are its own affair and end in its outcome.
        EXPECT_TRUE(status == SIGNUTILS_OUT_OF_MEMORY || status == expected) << status;
        EXPECT_TRUE(used || status == expected) << status;
        return used;
    }

    template <typename Failure>
    void FailEveryAllocation()
    {
        const SignUtilsStatus expected = GetParam().call(m_session);
        unsigned long spared = 0;
        while (CallSparing<Failure>(spared, expected) && !HasFailure())
        {
            ++spared;
        }
        EXPECT_GT(spared, 0U); // there was something to fail
    }

    CSession m_session;
    ScopedEnvironment m_noPool{"SIGNUTILS_POOL", "0"};
};

TEST_P(CMemory, EndsInACodeWhicheverAllocationFails)
{
    FailEveryAllocation<FailNextAllocation>();
}

TEST_P(CMemory, EndsInACodeWhereverItRunsOutForGood)
{
    FailEveryAllocation<FailAllAllocations>();
}

INSTANTIATE_TEST_SUITE_P(EveryCall, CMemory, ::testing::ValuesIn(kMemoryCases),
                         [](const auto& test) { return std::string(test.param.name); });

class CMemoryOfSettings : public SessionTest
{
protected:
    /// Reads the report in the end; a call whose allocation failed gives none.
    static SignUtilsStatus ReadWhicheverAllocationFails(SignUtilsSession* session,
                                                        const char** report)
    {
        for (unsigned long spared = 0;; ++spared)
        {
            const FailNextAllocation failure(spared);
            const SignUtilsStatus status = SignUtilsGetPSRWarning(session, report);
            if (!failure.WasUsed())
            {
                return status;
            }
            EXPECT_EQ(status, SIGNUTILS_OUT_OF_MEMORY) << spared;
            EXPECT_STREQ(*report, "") << spared;
        }
    }
};

TEST_F(CMemoryOfSettings, SettingThatFailsHalfWayLeavesAllOfTheOldOnes)
{
    const CSession session;
    PrepareC(session, m_database.ConnexionString());
    const std::string old = "ORDER0001";
    bool used = true;
    for (unsigned long spared = 0; used; ++spared)
    {
        SCOPED_TRACE(spared);
        SignUtilsStatus status = SIGNUTILS_UNEXPECTED;
        {
            const FailNextAllocation failure(spared);
            status = SignUtilsSetMessageInfo(session, kLong, "OTHERONE1", kLong, kLong);
            used = failure.WasUsed();
        }
        EXPECT_EQ(status, used ? SIGNUTILS_OUT_OF_MEMORY : SIGNUTILS_OK);
        if (used)
        {
            EXPECT_THAT(session.Error(), HasSubstr("not enough memory"));
        }
        ASSERT_EQ(SignUtilsLogEvent(session, 0, "event"), SIGNUTILS_OK);
        const std::wstring text = ReadJournal(m_database).back().text;
        EXPECT_THAT(text, HasSubstr(used ? L"OrderId=ORDER0001" : L"OrderId=OTHERONE1"));
    }
}

TEST_F(CMemoryOfSettings, ReportOfACheckIsUtf8WhereverMemoryRanOut)
{
    int reports = 0;
    bool used = true;
    for (unsigned long spared = 0; used; ++spared)
    {
        const CSession session;
        PrepareC(session, ""); // a check that cannot be run is answered, too
        ASSERT_EQ(SignUtilsSetMessageInfo(session, "BANKFRPP", "ÉTÉ", "pain.001.001.03", "MSG-1"),
                  SIGNUTILS_OK);
        ASSERT_EQ(SignUtilsSetPSRWarning(session, "STATUS"), SIGNUTILS_OK);
        std::uint32_t verdict = 4711;
        {
            const FailNextAllocation failure(spared);
            SignUtilsCheckSignRules(session, "order.xml", "Ana Ruiz", &verdict);
            used = failure.WasUsed();
        }
        EXPECT_NE(verdict, static_cast<std::uint32_t>(SIGNUTILS_ACCEPTED));
        const char* report = nullptr;
        ASSERT_EQ(ReadWhicheverAllocationFails(session, &report), SIGNUTILS_OK);
        if (*report != '\0')
        {
            ++reports;
            EXPECT_THAT(report, HasSubstr("<OrgnlMsgId>ÉTÉ</OrgnlMsgId>")) << spared;
        }
    }
    EXPECT_GT(reports, 2); // some before it was encoded, some behind
}

} // namespace
