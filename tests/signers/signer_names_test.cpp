#include "tests/signers/directory_fixture.h"
#include "tests/signers/failing_rows.h"

namespace
{

using testing_support::Holder;

class SignerNames : public testing_support::HolderDirectoryTest
{
};

TEST_F(SignerNames, HolderOfACertificateIsNamed)
{
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Ana Ruiz"))
        .With(Holder(L"H2").Named(L"Bo", L"Dahl").Certificate(L"Bo Dahl"));

    EXPECT_EQ(Names(L"Ana Ruiz"), 1);
    EXPECT_EQ(std::wstring(firstName), L"Ana");
    EXPECT_EQ(std::wstring(lastName), L"Ruiz");
    EXPECT_TRUE(problem.IsEmpty());
}

TEST_F(SignerNames, UnknownCertificateGivesZeroAndLeavesTheBuffersUntouched)
{
    bank.With(Holder(L"H1").Certificate(L"Ana Ruiz"));

    EXPECT_EQ(Names(L"Somebody Else"), 0);
    ExpectBuffersUntouched();
    EXPECT_EQ(trace.Lines(), "");
}

TEST_F(SignerNames, MixedCaseMatchesACertificateStoredInLowerCase)
{
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"ana ruiz"));

    EXPECT_EQ(Names(L"aNA RuiZ"), 1);
    EXPECT_EQ(std::wstring(firstName), L"Ana");
}

TEST_F(SignerNames, CertificateOfTwoHoldersGivesTheLastRowAndOneWarning)
{
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Shared"))
        .With(Holder(L"H2").Named(L"Bo", L"Dahl").Certificate(L"Shared"));

    EXPECT_EQ(Names(L"Shared"), 1);
    EXPECT_EQ(trace.Count("******* WARNING   |#Signers with same certificates"), 1);
    EXPECT_EQ(trace.Count("SIGNER NAME-------|---------------------------"), 2);

    const std::string lines = trace.Lines();
    const bool anaLast = lines.rfind("FirstName    |Ana") > lines.rfind("FirstName    |Bo");
    EXPECT_EQ(std::wstring(firstName), anaLast ? L"Ana" : L"Bo");
    EXPECT_EQ(std::wstring(lastName), anaLast ? L"Ruiz" : L"Dahl");
}

TEST_F(SignerNames, EveryRowAfterTheFirstWritesAWarning)
{
    bank.With(Holder(L"H1").Certificate(L"Shared"))
        .With(Holder(L"H2").Certificate(L"Shared"))
        .With(Holder(L"H3").Certificate(L"Shared"));

    EXPECT_EQ(Names(L"Shared"), 1);
    EXPECT_EQ(trace.Count("******* WARNING   |#Signers with same certificates"), 2);
}

TEST_F(SignerNames, TraceShowsTheRowThatTheNamesCameFrom)
{
    bank.With(Holder(L"H1")
                  .Named(L"An\u00E9", L"\u0141uk")
                  .Opposition(L"1")
                  .Certificate(L"Ana Ruiz", L"4711"));

    EXPECT_EQ(Names(L"Ana Ruiz"), 1);
    EXPECT_EQ(trace.Lines(), "SIGNER NAME-------|---------------------------\n"
                             "HUID Signer       |H1\n"
                             "HUID FirstName    |An\xC3\xA9\n"
                             "HUID LastName     |\xC5\x81uk\n"
                             "HUID Serial Number|4711\n"
                             "HUID Is Opposition|1\n");
}

TEST_F(SignerNames, NamesLongerThan255CharactersAreCut)
{
    if (!testing_support::RunsOnSqlite())
    {
        GTEST_SKIP() << "needs a product that stores texts beyond their column's length";
    }
    bank.With(Holder(L"H1")
                  .Named(std::wstring(300, L'f'), std::wstring(256, L'l'))
                  .Certificate(L"Ana Ruiz"));

    EXPECT_EQ(Names(L"Ana Ruiz"), 1);
    EXPECT_EQ(std::wstring(firstName), std::wstring(255, L'f'));
    EXPECT_EQ(std::wstring(lastName), std::wstring(255, L'l'));
}

TEST_F(SignerNames, NamesOf255CharactersAreKeptWhole)
{
    bank.With(Holder(L"H1")
                  .Named(std::wstring(255, L'f'), std::wstring(254, L'l'))
                  .Certificate(L"Ana Ruiz"));

    EXPECT_EQ(Names(L"Ana Ruiz"), 1);
    EXPECT_EQ(std::wstring(firstName).size(), 255U);
    EXPECT_EQ(std::wstring(lastName).size(), 254U);
}

TEST_F(SignerNames, WithoutConnectionTheAnswerIsZeroAndNothingIsTraced)
{
    directory.database = nullptr;

    EXPECT_EQ(Names(L"Ana Ruiz"), 0);
    ExpectBuffersUntouched();
    EXPECT_EQ(trace.Lines(), "");
}

TEST_F(SignerNames, WithoutTraceTheAnswerIsTheSame)
{
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Ana Ruiz"));
    for (void* const unusable : {static_cast<void*>(nullptr), reinterpret_cast<void*>(~0ULL)})
    {
        directory.trace = unusable;
        EXPECT_EQ(Names(L"Ana Ruiz"), 1);
        EXPECT_EQ(std::wstring(firstName), L"Ana");
    }
    EXPECT_EQ(trace.Lines(), "");
}

} // namespace
