#include "tests/signutils/c_handles.h"
#include "tests/signutils/session_fixture.h"

#include <cstdint>
#include <string>

using namespace testing_support;

namespace
{

struct HolderNames
{
    std::string certificate;
    std::string first;
    std::string last;

    bool operator==(const HolderNames&) const = default;
};

void PrintTo(const HolderNames& names, std::ostream* stream)
{
    *stream << names.certificate << '/' << names.first << '/' << names.last;
}

/// A session whose check has opened the connection.
class CHolders : public SessionTest
{
protected:
    CHolders()
    {
        Bank(m_database)
            .With(Holder(L"H2").Named(L"Łukasz", L"Nowak").Certificate(L"Łukasz Nowak").Blocked());
        PrepareC(m_session, m_database.ConnexionString());
        std::uint32_t verdict = 4711;
        EXPECT_EQ(SignUtilsCheckSignRules(m_session, "order.xml", "Ana Ruiz", &verdict),
                  SIGNUTILS_OK);
        EXPECT_EQ(SignUtilsSignersAdd(m_signers, "ana RUIZ"), SIGNUTILS_OK);
        EXPECT_EQ(SignUtilsSignersAdd(m_signers, "Łukasz Nowak"), SIGNUTILS_OK);
    }

    SignUtilsHolder Infos(const char* holderId)
    {
        SignUtilsHolder holder = {};
        holder.size = sizeof holder;
        EXPECT_EQ(SignUtilsGetSignerInfos(m_session, holderId, m_signers, &holder), SIGNUTILS_OK);
        return holder;
    }

    HolderNames Signer(std::int32_t index)
    {
        const char* certificate = nullptr;
        const char* first = nullptr;
        const char* last = nullptr;
        EXPECT_EQ(SignUtilsSignersGet(m_signers, index, &certificate, &first, &last), SIGNUTILS_OK);
        return {certificate, first, last};
    }

    CSession m_session;
    CSigners m_signers;
};

TEST_F(CHolders, NamesOfACertificateAreFoundInUtf8)
{
    std::int32_t found = 4711;
    const char* first = nullptr;
    const char* last = nullptr;
    ASSERT_EQ(SignUtilsGetSignerNames(m_session, "Łukasz Nowak", &found, &first, &last),
              SIGNUTILS_OK);
    EXPECT_EQ(found, 1);
    EXPECT_STREQ(first, "Łukasz");
    EXPECT_STREQ(last, "Nowak");
}

TEST_F(CHolders, CertificateThatNobodyHasIsNotFound)
{
    std::int32_t found = 4711;
    const char* first = nullptr;
    const char* last = nullptr;
    ASSERT_EQ(SignUtilsGetSignerNames(m_session, "Nobody", &found, &first, &last), SIGNUTILS_OK);
    EXPECT_EQ(found, 0);
    EXPECT_STREQ(first, "");
    EXPECT_STREQ(last, "");
}

TEST_F(CHolders, NothingIsFoundBeforeACheckHasOpenedTheConnection)
{
    const CSession fresh;
    std::int32_t found = 4711;
    const char* first = nullptr;
    const char* last = nullptr;
    ASSERT_EQ(SignUtilsGetSignerNames(fresh, "Ana Ruiz", &found, &first, &last), SIGNUTILS_OK);
    EXPECT_EQ(found, 0);
}

TEST_F(CHolders, HolderCompletesItsEntryOfTheSigners)
{
    const SignUtilsHolder holder = Infos("H1");
    EXPECT_EQ(holder.found, 1);
    EXPECT_EQ(holder.notOpposition, 1);
    EXPECT_STREQ(holder.certificate, "Ana Ruiz");
    EXPECT_STREQ(holder.firstName, "Ana");
    EXPECT_STREQ(holder.lastName, "Ruiz");

    EXPECT_EQ(Signer(0), (HolderNames{"ana RUIZ", "Ana", "Ruiz"}));
    EXPECT_EQ(Signer(1), (HolderNames{"Łukasz Nowak", "", ""}));
    std::int32_t count = 0;
    ASSERT_EQ(SignUtilsSignersCount(m_signers, &count), SIGNUTILS_OK);
    EXPECT_EQ(count, 2);
}

TEST_F(CHolders, EntryThatIsTakenIsNotFoundAgain)
{
    EXPECT_EQ(Infos("H1").found, 1);
    const SignUtilsHolder again = Infos("H1");
    EXPECT_EQ(again.found, 0);
    EXPECT_STREQ(again.lastName, "Ruiz"); // that of the last row read, matched or not
}

TEST_F(CHolders, BlockedHolderIsFoundAsBlocked)
{
    const SignUtilsHolder holder = Infos("H2");
    EXPECT_EQ(holder.found, 1);
    EXPECT_EQ(holder.notOpposition, 0);
    EXPECT_STREQ(holder.firstName, "Łukasz");
}

TEST_F(CHolders, UnknownHolderGivesEmptyTexts)
{
    const SignUtilsHolder holder = Infos("H9");
    EXPECT_EQ(holder.found, 0);
    EXPECT_EQ(holder.notOpposition, 0);
    EXPECT_STREQ(holder.certificate, "");
    EXPECT_EQ(Signer(0), (HolderNames{"ana RUIZ", "", ""}));
}

} // namespace
