#include "tests/signutils/session_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>

using namespace testing_support;

namespace
{

class SessionCopies : public SessionTest
{
protected:
    using Session = std::unique_ptr<SignUtils>;

    Session NewSession()
    {
        auto session = std::make_unique<SignUtils>();
        Prepare(*session);
        return session;
    }

    static std::wstring ManySigners(int count)
    {
        std::wstring signers;
        for (int i = 0; i < count; ++i)
        {
            signers += L"Signer " + std::to_wstring(i) + L";";
        }
        return signers;
    }
};

TEST_F(SessionCopies, CopyHasEverySetting)
{
    SignUtils session(nullptr, "host.log");
    Prepare(session);
    session.SetRefRequest("REQ-1");
    session.SetPSRWarning("STATUS");
    session.SetAmountInfo(1000.01, 1.00, "EUR");
    session.SetModeVeu();
    SignUtils copy(session);

    EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);
    EXPECT_EQ(copy.CheckSignRules("order.xml", L""), kRefused);
    const auto journal = ReadJournal(m_database);
    ASSERT_EQ(journal.size(), 4U);
    EXPECT_EQ(journal[0].text, journal[2].text);
    EXPECT_EQ(journal[2].reference, L"REQ-1");
    EXPECT_EQ(journal[2].attachPath, L"host.log");
}

TEST_F(SessionCopies, CopyTakesReportAndExtraInfoAlong)
{
    const Session session = NewSession();
    session->SetAmountInfo(1000.01, 1.00, "EUR");
    session->SetPSRWarning("STATUS");
    session->CheckSignRules("order.xml", L"Ana Ruiz");
    const SignUtils copy(*session);

    EXPECT_TRUE(copy.GetPSRWarning() == session->GetPSRWarning());
    EXPECT_TRUE(copy.GetExtraInfo() == session->GetExtraInfo());
    EXPECT_EQ(copy.GetLastCheck().verdict, kRefused);
}

TEST_F(SessionCopies, SettingsMadeAfterCopyingAreEachOnesOwn)
{
    const Session session = NewSession();
    SignUtils copy(*session);
    copy.SetAmountInfo(1000.01, 1.00, "EUR");

    EXPECT_EQ(session->CheckSignRules("order.xml", L"Ana Ruiz"), kSuccess);
    EXPECT_EQ(copy.CheckSignRules("order.xml", L""), kRefused);
}

TEST_F(SessionCopies, SignersAreSharedWithTheirCount)
{
    const Session session = NewSession();
    SignUtils copy(*session);

    EXPECT_EQ(session->CheckSignRules("order.xml", L"Ana Ruiz"), kSuccess);
    // The copy sees the original's signer, and the original the one that the copy appends: two
    // signers are refused by a profile of one.
    EXPECT_EQ(copy.CheckSignRules("order.xml", L""), kSuccess);
    EXPECT_NE(copy.CheckSignRules("order.xml", L"Bo Lind"), kSuccess);
    EXPECT_NE(session->CheckSignRules("order.xml", L""), kSuccess);
}

TEST_F(SessionCopies, JournalClientThatExistsIsShared)
{
    const Session session = NewSession();
    session->LogEvent(0, L"original");
    SignUtils copy(*session);
    const TestDatabase other;
    copy.SetConnexionString(other.ConnexionString().c_str());
    copy.LogEvent(0, L"copy");

    const auto journal = ReadJournal(m_database);
    ASSERT_EQ(journal.size(), 2U);
    EXPECT_EQ(MessageOf(journal[1]), L"copy");
}

TEST_F(SessionCopies, JournalClientMadeAfterCopyingIsEachOnesOwn)
{
    const Session session = NewSession();
    SignUtils copy(*session);
    TestDatabase other;
    copy.SetConnexionString(other.ConnexionString().c_str());
    session->LogEvent(0, L"original");
    copy.LogEvent(0, L"copy");

    ASSERT_EQ(ReadJournal(m_database).size(), 1U);
    EXPECT_EQ(MessageOf(ReadJournal(m_database)[0]), L"original");
    ASSERT_EQ(ReadJournal(other).size(), 1U);
    EXPECT_EQ(MessageOf(ReadJournal(other)[0]), L"copy");
}

TEST_F(SessionCopies, ConnectionThatExistsIsShared)
{
    const Session session = NewSession();
    session->CheckSignRules("order.xml", L"Ana Ruiz");
    SignUtils copy(*session);

    wchar_t certificate[256] = L"Ana Ruiz";
    wchar_t first[256] = L"";
    wchar_t last[256] = L"";
    EXPECT_EQ(copy.GetSignerNames(certificate, first, last), 1);
    EXPECT_STREQ(last, L"Ruiz");
}

TEST_F(SessionCopies, ConnectionMadeAfterCopyingIsEachOnesOwn)
{
    const Session session = NewSession();
    SignUtils copy(*session);
    session->CheckSignRules("order.xml", L"Ana Ruiz");

    wchar_t certificate[256] = L"Ana Ruiz";
    wchar_t first[256] = L"";
    wchar_t last[256] = L"";
    EXPECT_EQ(session->GetSignerNames(certificate, first, last), 1);
    EXPECT_EQ(copy.GetSignerNames(certificate, first, last), 0);
}

TEST_F(SessionCopies, CopyGoesOnWhenTheOriginalIsGone)
{
    Session session = NewSession();
    session->CheckSignRules("order.xml", L"Ana Ruiz");
    SignUtils copy(*session);
    session.reset();

    EXPECT_EQ(copy.CheckSignRules("order.xml", L""), kSuccess);
    EXPECT_EQ(ReadJournal(m_database).size(), 2U);
}

TEST_F(SessionCopies, SignersGrowBeyondTheirFirstStorageAfterACopy)
{
    const Session session = NewSession();
    session->CheckSignRules("order.xml", L"Ana Ruiz");
    SignUtils copy(*session);
    copy.CheckSignRules("order.xml", ManySigners(127).c_str());
    session->CheckSignRules("order.xml", ManySigners(300).c_str());

    EXPECT_NE(copy.CheckSignRules("order.xml", L"One More"), kSuccess);
    EXPECT_TRUE(copy.GetLastCheck().ran);
}

TEST_F(SessionCopies, EveryOrderOfDestructionIsSafeAfterGrowth)
{
    std::array<std::size_t, 3> order = {0, 1, 2};
    do
    {
        std::array<Session, 3> sessions;
        sessions[0] = NewSession();
        sessions[0]->CheckSignRules("order.xml", L"Ana Ruiz");
        sessions[1] = std::make_unique<SignUtils>(*sessions[0]);
        sessions[2] = std::make_unique<SignUtils>();
        *sessions[2] = *sessions[1];
        sessions[1]->CheckSignRules("order.xml", ManySigners(200).c_str());
        for (const std::size_t index : order)
        {
            sessions[index].reset();
            for (const Session& left : sessions)
            {
                if (left != nullptr)
                {
                    left->LogEvent(0, L"still there");
                }
            }
        }
    } while (std::next_permutation(order.begin(), order.end()));
    // Six orders: two checks each, then two events and one by those that are left.
    EXPECT_EQ(ReadJournal(m_database).size(), 6U * (2 + 2 + 1));
}

TEST_F(SessionCopies, AssignmentGivesTheObjectItselfAndTakesEverything)
{
    const Session session = NewSession();
    session->LogEvent(0, L"original");
    SignUtils other;
    EXPECT_EQ(&(other = *session), &other);
    other.LogEvent(0, L"assigned");

    ASSERT_EQ(ReadJournal(m_database).size(), 2U);
    EXPECT_EQ(ReadJournal(m_database)[0].text.substr(0, 60),
              ReadJournal(m_database)[1].text.substr(0, 60));
}

TEST_F(SessionCopies, AssignmentLetsGoOfWhatWasHeld)
{
    TestDatabase own;
    const Session session = NewSession();
    session->LogEvent(0, L"shared from now on");
    const Session target = NewSession();
    target->SetConnexionString(own.ConnexionString().c_str());
    target->LogEvent(0, L"to its own journal");
    target->CheckSignRules("order.xml", L"Nobody;No One");

    *target = *session;
    target->LogEvent(0, L"to the journal taken over");
    EXPECT_EQ(target->CheckSignRules("order.xml", L"Ana Ruiz"), kSuccess);
    EXPECT_EQ(ReadJournal(own).size(), 2U);
    EXPECT_EQ(ReadJournal(m_database).size(), 3U);
}

TEST_F(SessionCopies, AssignmentToItselfChangesNothing)
{
    const Session session = NewSession();
    session->SetAmountInfo(1000.01, 1.00, "EUR");
    session->SetPSRWarning("STATUS");
    session->CheckSignRules("order.xml", L"Ana Ruiz");
    const TSimpleString report = session->GetPSRWarning();
    const TSimpleString info = session->GetExtraInfo();
    SignUtils& same = *session;
    *session = same;

    EXPECT_TRUE(session->GetPSRWarning() == report);
    EXPECT_TRUE(session->GetExtraInfo() == info);
    EXPECT_EQ(session->GetLastCheck().verdict, kRefused);
    EXPECT_EQ(session->CheckSignRules("order.xml", L""), kRefused);
    EXPECT_EQ(ReadJournal(m_database).size(), 4U);
}

TEST_F(SessionCopies, SessionMadeWithoutArgumentsIsThatOfTwoNulls)
{
    SignUtils plain;
    SignUtils nulls(nullptr, nullptr);
    Prepare(plain);
    Prepare(nulls);
    plain.LogEvent(0, L"same");
    nulls.LogEvent(0, L"same");

    const auto journal = ReadJournal(m_database);
    ASSERT_EQ(journal.size(), 2U);
    EXPECT_EQ(journal[0].text, journal[1].text);
    EXPECT_EQ(journal[0].attachPath, L"");
    EXPECT_EQ(journal[1].attachPath, L"");
}

} // namespace
