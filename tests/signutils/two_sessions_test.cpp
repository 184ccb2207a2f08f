#include "tests/signutils/session_fixture.h"

#include <string>
#include <thread>
#include <vector>

using namespace testing_support;

namespace
{

class TwoSessions : public SessionTest
{
protected:
    TwoSessions()
    {
        Bank(m_other)
            .With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Ana Ruiz"))
            .With(Contract(L"C1").AloneBy(L"H1").UpTo(L"1000.00"));
    }

    TestDatabase m_other;
};

constexpr int kChecksOfEach = 5;

TEST_F(TwoSessions, InTwoThreadsJudgeWithoutTouchingEachOther)
{
    std::vector<unsigned long> accepted;
    std::vector<unsigned long> refused;
    TraceFile trace;
    const auto judge =
        [&](const std::string& connexionString, double total, std::vector<unsigned long>& verdicts)
    {
        for (int i = 0; i < kChecksOfEach; ++i)
        {
            SignUtils session(trace.Handle(), nullptr);
            Prepare(session);
            session.SetConnexionString(connexionString.c_str());
            session.SetAmountInfo(total, 1.00, "EUR");
            session.SetPSRWarning("STATUS");
            verdicts.push_back(session.CheckSignRules("order.xml", L"Ana Ruiz"));
        }
    };
    std::thread first(judge, m_database.ConnexionString(), 1.00, std::ref(accepted));
    std::thread second(judge, m_other.ConnexionString(), 1000.01, std::ref(refused));
    first.join();
    second.join();

    EXPECT_EQ(accepted, std::vector<unsigned long>(kChecksOfEach, kSuccess));
    EXPECT_EQ(refused, std::vector<unsigned long>(kChecksOfEach, kRefused));
    EXPECT_EQ(ReadJournal(m_database).size(), static_cast<std::size_t>(kChecksOfEach));
    EXPECT_EQ(ReadJournal(m_other).size(), 2U * kChecksOfEach);
    EXPECT_EQ(m_database.Query(L"SELECT STATUT FROM HST_SIGNRULES").size(),
              static_cast<std::size_t>(kChecksOfEach));
    EXPECT_EQ(m_other.Query(L"SELECT STATUT FROM HST_SIGNRULES").size(),
              static_cast<std::size_t>(kChecksOfEach));
}

} // namespace
