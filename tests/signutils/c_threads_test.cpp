#include "tests/signutils/c_handles.h"
#include "tests/signutils/session_fixture.h"

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

using namespace testing_support;

namespace
{

constexpr int kChecksOfAThread = 5;

class CThreads : public SessionTest
{
protected:
    void Judge(double total, std::vector<std::uint32_t>& verdicts, std::vector<std::string>& codes)
    {
        for (int i = 0; i < kChecksOfAThread; ++i)
        {
            const CSession session;
            PrepareC(session, m_database.ConnexionString());
            EXPECT_EQ(SignUtilsSetAmountInfo(session, total, 1.0, "EUR"), SIGNUTILS_OK);
            std::uint32_t verdict = 4711;
            EXPECT_EQ(SignUtilsCheckSignRules(session, "order.xml", "Ana Ruiz", &verdict),
                      SIGNUTILS_OK);
            verdicts.push_back(verdict);
            codes.emplace_back(LastCheckOf(session).reasonCode);
        }
    }
};

TEST_F(CThreads, SessionsInTwoThreadsJudgeWithoutTouchingEachOther)
{
    std::vector<std::uint32_t> accepted;
    std::vector<std::uint32_t> refused;
    std::vector<std::string> acceptedCodes;
    std::vector<std::string> refusedCodes;
    std::thread first([&] { Judge(1.00, accepted, acceptedCodes); });
    std::thread second([&] { Judge(1000.01, refused, refusedCodes); });
    first.join();
    second.join();
    EXPECT_EQ(accepted, std::vector<std::uint32_t>(kChecksOfAThread, SIGNUTILS_ACCEPTED));
    EXPECT_EQ(refused, std::vector<std::uint32_t>(kChecksOfAThread, SIGNUTILS_REFUSED));
    EXPECT_EQ(acceptedCodes, std::vector<std::string>(kChecksOfAThread, ""));
    EXPECT_EQ(refusedCodes, std::vector<std::string>(kChecksOfAThread, "AM02"));
}

TEST_F(CThreads, EachThreadHasItsOwnErrorText)
{
    EXPECT_EQ(SignUtilsSignersAdd(nullptr, ""), SIGNUTILS_NULL_ARGUMENT);
    const std::string mine = ThreadErrorText();
    std::string atFirst = "unset";
    std::string theirs;
    std::thread other(
        [&]
        {
            atFirst = ThreadErrorText();
            EXPECT_EQ(SignUtilsComInitialize(7), SIGNUTILS_BAD_ARGUMENT);
            theirs = ThreadErrorText();
        });
    other.join();
    EXPECT_EQ(atFirst, "");
    EXPECT_NE(theirs, mine);
    EXPECT_EQ(ThreadErrorText(), mine);
}

TEST_F(CThreads, ErrorOfASessionIsReadByWhicheverThreadHasIt)
{
    const CSession session;
    std::thread other([&]
                      { EXPECT_EQ(SignUtilsSetRefRequest(session, "\xFF"), SIGNUTILS_NOT_UTF8); });
    other.join();
    EXPECT_EQ(session.Error(), "refRequest: byte 1 is no well-formed UTF-8. Give texts in UTF-8.");
    EXPECT_EQ(ThreadErrorText(), "");
}

} // namespace
