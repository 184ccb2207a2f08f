#include "support/codepage.h"
#include "tests/signutils/c_handles.h"
#include "tests/signutils/session_fixture.h"

#include <cstdint>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

// Calls in any order with any arguments, as a host makes them that has read nothing: each ends in
// a status that is known, with an error text when and only when it did not succeed.

using namespace testing_support;

namespace
{

constexpr int kCalls = 400;
constexpr std::size_t kHuge = 1'000'000;
constexpr std::size_t kManySigners = 8'000;

std::string Repeat(const std::string& text, std::size_t size)
{
    std::string repeated;
    while (repeated.size() < size)
    {
        repeated += text;
    }
    return repeated;
}

class CRandomCalls : public SessionTest, public ::testing::WithParamInterface<unsigned>
{
protected:
    CRandomCalls()
    {
        m_texts = {"",
                   "Ana Ruiz",
                   "PARTNER1",
                   "PARTNER12",
                   "ISO20022",
                   "pain.001",
                   ";;Ana Ruiz;;",
                   "%s%n%S%I64d",
                   "'; DROP TABLE HST_SIGNRULES; --",
                   "../../x",
                   "\r\n\t\x01\x7F\x1A",
                   "\u00C9T\u00C9 \u20AC",
                   "\u0141\u00F3d\u017A",
                   "\U0001F600",
                   "\xFF",
                   "\xED\xA0\x80",
                   "cut \xE2\x82",
                   m_folder.Path("order.xml"),
                   Repeat("x", kHuge),
                   Repeat("\u20AC;", kManySigners)};
    }

    ~CRandomCalls() override
    {
        for (SignUtilsSession* session : m_sessions)
        {
            SignUtilsDestroy(session);
        }
        SignUtilsSignersDestroy(m_signers);
    }

    std::uint32_t Number() { return static_cast<std::uint32_t>(m_random()); }
    std::size_t Below(std::size_t count) { return Number() % count; }

    /// Sometimes null, sometimes what the last call gave out.
    const char* Text()
    {
        const std::size_t chosen = Below(m_texts.size() + 2);
        if (chosen == m_texts.size())
        {
            return nullptr;
        }
        return chosen > m_texts.size() ? m_given : m_texts[chosen].c_str();
    }
    double Amount()
    {
        using Limits = std::numeric_limits<double>;
        const double amounts[] = {0.0, -1.0, 100.0, 1e300, Limits::quiet_NaN(), Limits::infinity()};
        return amounts[Below(std::size(amounts))];
    }
    SignUtilsSession*& Session() { return m_sessions[Below(m_sessions.size())]; }

    template <typename Record>
    Record Place()
    {
        const std::uint32_t sizes[] = {sizeof(Record), sizeof(Record), 0, sizeof(Record) - 1,
                                       UINT32_MAX};
        Record record = {};
        record.size = sizes[Below(std::size(sizes))];
        return record;
    }

    void Expect(SignUtilsSession* session, SignUtilsStatus status)
    {
        const std::string error = SignUtilsErrorText(session);
        EXPECT_GE(status, SIGNUTILS_OK) << error;
        EXPECT_LT(status, SIGNUTILS_UNEXPECTED) << error;
        EXPECT_EQ(error.empty(), status == SIGNUTILS_OK) << status << ' ' << error;
        EXPECT_FALSE(support::FindMalformedUtf8(error)) << error;
        m_refused += status == SIGNUTILS_OK ? 0 : 1;
    }

    void ExpectGiven(const char* text)
    {
        ASSERT_NE(text, nullptr);
        EXPECT_FALSE(support::FindMalformedUtf8(text));
    }

    using Call = void (CRandomCalls::*)();
    static const std::vector<Call> kCallsOfAHost;

    void Replace();
    void Copy();
    void Assign();
    void SetContractInfo();
    void SetOthers();
    void Judge();
    void JudgeRules();
    void ReadLastCheck();
    void ReadTexts();
    void ReadProtocols();
    void LookUp();
    void FillSigners();
    void Convert();
    void WriteReport();
    void HandOn();
    void LogEvent();

    std::mt19937 m_random{GetParam()};
    std::vector<std::string> m_texts;
    std::vector<SignUtilsSession*> m_sessions{nullptr, nullptr, nullptr};
    SignUtilsSigners* m_signers = nullptr;
    const char* m_given = "";
    int m_refused = 0;
};

void CRandomCalls::Replace()
{
    SignUtilsSession*& session = Session();
    SignUtilsDestroy(session);
    m_given = "";
    Expect(nullptr, SignUtilsCreate(nullptr, Text(), &session));
}

void CRandomCalls::Copy()
{
    SignUtilsSession* const source = Session();
    SignUtilsSession* copy = nullptr;
    Expect(source, SignUtilsCopy(source, &copy));
    SignUtilsSession*& place = Session();
    SignUtilsDestroy(place);
    place = copy;
    m_given = "";
}

void CRandomCalls::Assign()
{
    SignUtilsSession* const session = Session();
    Expect(session, SignUtilsAssign(session, Session()));
    m_given = "";
}

void CRandomCalls::SetContractInfo()
{
    SignUtilsSession* const session = Session();
    // The store stays the test's own.
    Expect(session, SignUtilsSetContractInfo(session, Number(), Number(), Text(), Text(), Text(),
                                             static_cast<std::int32_t>(Number()), nullptr));
    m_given = "";
}

void CRandomCalls::SetOthers()
{
    SignUtilsSession* const session = Session();
    Expect(session, SignUtilsSetMessageInfo(session, Text(), Text(), Text(), Text()));
    m_given = "";
    Expect(session, SignUtilsSetFormatInfo(session, Text(), Text(), Text()));
    Expect(session, SignUtilsSetAmountInfo(session, Amount(), Amount(), Text()));
    Expect(session, SignUtilsSetPSRWarning(session, Text()));
    Expect(session, SignUtilsSetRefRequest(session, Text()));
    Expect(session, SignUtilsSetIdFileVfs(session, Number()));
    Expect(session, SignUtilsSetModeVeu(session));
    const std::string connexionString = Below(3) == 0 ? "" : m_database.ConnexionString();
    Expect(session, SignUtilsSetConnexionString(session, connexionString.c_str()));
}

void CRandomCalls::Judge()
{
    SignUtilsSession* const session = Session();
    std::uint32_t verdict = 4711;
    Expect(session, SignUtilsCheckSignRules(session, Text(), Text(), &verdict));
    EXPECT_LE(verdict, static_cast<std::uint32_t>(SIGNUTILS_REFUSED));
    m_given = "";
}

void CRandomCalls::JudgeRules()
{
    SignUtilsSession* const session = Session();
    std::uint32_t verdict = 4711;
    const char* code = nullptr;
    const char* text = nullptr;
    Expect(session, SignUtilsCheckSignRulesFor(session, Text(), Text(), Amount(), Amount(), Text(),
                                               &verdict, &code, &text));
    EXPECT_LE(verdict, static_cast<std::uint32_t>(SIGNUTILS_REFUSED));
    ExpectGiven(code);
    ExpectGiven(text);
    m_given = "";
}

void CRandomCalls::ReadLastCheck()
{
    SignUtilsSession* const session = Session();
    auto check = Place<SignUtilsCheck>();
    const SignUtilsStatus status = SignUtilsGetLastCheck(session, &check);
    Expect(session, status);
    m_given = "";
    if (status == SIGNUTILS_OK)
    {
        ExpectGiven(check.problem);
        ExpectGiven(check.reasonText);
        m_given = check.problem;
    }
}

void CRandomCalls::ReadTexts()
{
    SignUtilsSession* const session = Session();
    const char* text = nullptr;
    Expect(session, SignUtilsGetExtraInfo(session, &text));
    ExpectGiven(text);
    Expect(session, SignUtilsGetPSRWarning(session, &text));
    ExpectGiven(text);
    m_given = text;
}

void CRandomCalls::ReadProtocols()
{
    SignUtilsSession* const session = Session();
    std::int32_t found = 4711;
    std::uint32_t protocol = 4711;
    const char* name = nullptr;
    Expect(session, SignUtilsGetProtocolAt(session, static_cast<std::int32_t>(Number()), &found,
                                           &protocol, &name));
    ExpectGiven(name);
    Expect(session, SignUtilsGetProtocolName(session, Number() % 40, &name));
    ExpectGiven(name);
    m_given = name;
}

void CRandomCalls::LookUp()
{
    SignUtilsSession* const session = Session();
    std::int32_t found = 4711;
    const char* first = nullptr;
    const char* last = nullptr;
    Expect(session, SignUtilsGetSignerNames(session, Text(), &found, &first, &last));
    ExpectGiven(first);
    ExpectGiven(last);
    m_given = "";
    auto holder = Place<SignUtilsHolder>();
    Expect(session, SignUtilsGetSignerInfos(session, Text(), m_signers, &holder));
}

void CRandomCalls::FillSigners()
{
    std::int32_t count = 4711;
    const char* certificate = nullptr;
    const char* first = nullptr;
    const char* last = nullptr;
    Expect(nullptr, SignUtilsSignersAdd(m_signers, Text()));
    Expect(nullptr, SignUtilsSignersCount(m_signers, &count));
    Expect(nullptr, SignUtilsSignersGet(m_signers, static_cast<std::int32_t>(Below(3)),
                                        &certificate, &first, &last));
    ExpectGiven(certificate);
    if (Below(4) == 0)
    {
        SignUtilsSignersDestroy(m_signers);
        m_signers = nullptr;
        Expect(nullptr, SignUtilsSignersCreate(&m_signers));
    }
}

// Without COM on this thread, so that no engine runs.
void CRandomCalls::Convert()
{
    SignUtilsSession* const session = Session();
    Expect(session, SignUtilsExecWorkFmt(session, Text()));
    m_given = "";
    auto amounts = Place<SignUtilsAmounts>();
    Expect(session, SignUtilsGetMaxAmountFile(session, Text(), &amounts));
}

void CRandomCalls::WriteReport()
{
    SignUtilsSession* const session = Session();
    const char* report = nullptr;
    Expect(session, SignUtilsGeneratePSR(session, Text(), Text(), Text(), Text(),
                                         static_cast<std::int32_t>(Below(3)), Text(), Text(),
                                         static_cast<std::int32_t>(Number()), Amount(), &report));
    ExpectGiven(report);
    m_given = report;
}

void CRandomCalls::HandOn()
{
    SignUtilsSession* const session = Session();
    auto handOff = Place<SignUtilsHandOff>();
    Expect(session, SignUtilsAddPaymentStatusReport(session, Text(), Text(), Text(), Text(),
                                                    nullptr, &handOff));
    m_given = "";
}

void CRandomCalls::LogEvent()
{
    SignUtilsSession* const session = Session();
    Expect(session, SignUtilsLogEvent(session, static_cast<std::uint16_t>(Number()), Text()));
    m_given = "";
}

const std::vector<CRandomCalls::Call> CRandomCalls::kCallsOfAHost = {
    &CRandomCalls::Replace,     &CRandomCalls::Replace,         &CRandomCalls::Copy,
    &CRandomCalls::Assign,      &CRandomCalls::SetContractInfo, &CRandomCalls::SetOthers,
    &CRandomCalls::Judge,       &CRandomCalls::JudgeRules,      &CRandomCalls::ReadLastCheck,
    &CRandomCalls::ReadTexts,   &CRandomCalls::ReadProtocols,   &CRandomCalls::LookUp,
    &CRandomCalls::FillSigners, &CRandomCalls::Convert,         &CRandomCalls::WriteReport,
    &CRandomCalls::HandOn,      &CRandomCalls::LogEvent};

TEST_P(CRandomCalls, EndInAKnownStatusWithATextForEveryFailure)
{
    for (int call = 0; call < kCalls && !HasFailure(); ++call)
    {
        const std::size_t chosen = Below(kCallsOfAHost.size());
        SCOPED_TRACE("call " + std::to_string(call) + ", operation " + std::to_string(chosen));
        (this->*kCallsOfAHost[chosen])();
    }
    EXPECT_GT(m_refused, 0);
    EXPECT_LT(m_refused, kCalls * 3);
}

INSTANTIATE_TEST_SUITE_P(Seeds, CRandomCalls, ::testing::Range(1U, 9U));

} // namespace
