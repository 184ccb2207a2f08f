#include "tests/signers/directory_fixture.h"
#include "tests/signers/failing_rows.h"
#include "tests/testing/failing_allocations.h"

namespace
{

using testing_support::AllocationLimit;
using testing_support::FailOnRead;
using testing_support::Holder;
using testing_support::kRowByRow;
using testing_support::RunsOnSqlite;

class HolderFailures : public testing_support::HolderDirectoryTest
{
protected:
    // The text is the driver's own, so only its presence is known beforehand.
    void ExpectOneDatabaseError()
    {
        EXPECT_FALSE(problem.IsEmpty());
        EXPECT_EQ(trace.Count(std::string("Exception|") + problem.SafeGetString()), 1);
    }

    void ReadRowByRow()
    {
        session.Close();
        session.OpenEx((tables.ConnexionString() + kRowByRow).c_str(),
                       CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    }

    static constexpr std::size_t kLimit = std::size_t{1} << 20U;
    const std::wstring huge = std::wstring(kLimit, L'x');
};

TEST_F(HolderFailures, QuoteInACertificateNameMakesTheLookUpByCertificateFail)
{
    bank.With(Holder(L"H1").Certificate(L"Pat O'Brien"));

    EXPECT_EQ(Names(L"Pat O'Brien"), 0);
    ExpectBuffersUntouched();
    ExpectOneDatabaseError();
}

TEST_F(HolderFailures, QuoteInACertificateNameMakesTheLookUpOfTheHolderFail)
{
    bank.With(Holder(L"H1").Certificate(L"Ana Ruiz"));
    List({L"Ana Ruiz", L"Pat O'Brien"});

    EXPECT_EQ(Infos("H1"), 0);
    ExpectBuffersUntouched();
    EXPECT_EQ(FirstNameOf(0), L"");
    ExpectOneDatabaseError();
}

TEST_F(HolderFailures, CertificateNameThatWouldAddAHolderFindsNobody)
{
    EXPECT_EQ(Names(L"x') UNION SELECT 'h','p','F','L','0','Eve','1','1'--"), 0);
    ExpectBuffersUntouched();
    ExpectOneDatabaseError();
}

TEST_F(HolderFailures, SignerThatWouldAddAHolderCompletesNobody)
{
    List({L"Eve", L"x')) UNION SELECT 'h','p','F','L','0','Eve','1','1'--"});

    EXPECT_EQ(Infos("H1"), 0);
    ExpectBuffersUntouched();
    EXPECT_EQ(FirstNameOf(0), L"");
    ExpectOneDatabaseError();
}

TEST_F(HolderFailures, HolderIdentifierThatWouldNameAnotherFindsNobody)
{
    bank.With(Holder(L"H1").Certificate(L"Ana Ruiz"));
    List({L"Ana Ruiz"});

    EXPECT_EQ(Infos("' OR H.HUID='H1"), 0);
    ExpectBuffersUntouched();
    EXPECT_EQ(FirstNameOf(0), L"");
    ExpectOneDatabaseError();
}

TEST_F(HolderFailures, TextThatIsRefusedIsNamed)
{
    const std::string reason = " has an apostrophe without a partner, which would end its literal "
                               "in the statement: write it without apostrophes.";
    List({L"Ana Ruiz"});
    EXPECT_EQ(Names(L"Pat O'Brien"), 0);
    EXPECT_EQ(problem.SafeGetString(), "[42000] The certificate name" + reason);

    problem = "";
    EXPECT_EQ(Infos("H'1"), 0);
    EXPECT_EQ(problem.SafeGetString(), "[42000] The holder identifier" + reason);
}

TEST_F(HolderFailures, FailedLookUpIsNotComplete)
{
    bool complete = true;
    directory.complete = &complete;
    bank.With(Holder(L"H1").Certificate(L"Ana Ruiz"));
    EXPECT_EQ(Names(L"Ana Ruiz"), 1);
    EXPECT_TRUE(complete);
    EXPECT_EQ(Names(L"Pat O'Brien"), 0);
    EXPECT_FALSE(complete);
}

TEST_F(HolderFailures, QuotesInPairsStandForOneEach)
{
    bank.With(Holder(L"H'1").Named(L"Pat", L"O'Brien").Certificate(L"Pat O'Brien"))
        .With(Holder(L"H''2").Certificate(L"Bo Dahl"));
    List({L"Bo Dahl", L"Pat O''Brien"});

    EXPECT_EQ(Names(L"Pat O''Brien"), 1);
    EXPECT_EQ(std::wstring(lastName), L"O'Brien");
    EXPECT_EQ(Infos("H''''2"), 1);
    EXPECT_EQ(FirstNameOf(0), L"First");
    EXPECT_TRUE(problem.IsEmpty());
}

TEST_F(HolderFailures, NullNamesAreNotLookedUpAsAWord)
{
    bank.With(Holder(L"(null)").Certificate(L"(null)"));
    List({L"(null)"});

    EXPECT_EQ(Names(nullptr), 0);
    EXPECT_EQ(Infos(nullptr), 0);
    ExpectBuffersUntouched();
    EXPECT_TRUE(problem.IsEmpty());
}

TEST_F(HolderFailures, MissingTableIsTracedAndAnsweredByZero)
{
    tables.Execute(L"DROP TABLE SSR_HOLDERID");

    EXPECT_EQ(Names(L"Ana Ruiz"), 0);
    ExpectOneDatabaseError();
}

// SQLite takes an expression of a thousand levels, one for each signer and a few more.
TEST_F(HolderFailures, SignersBeyondWhatTheProductTakesAreAFailedLookUp)
{
    if (!RunsOnSqlite())
    {
        GTEST_SKIP() << "needs a product that limits the depth of an expression";
    }
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Ana Ruiz"));
    List({L"Ana Ruiz"});
    while (list.GetCount() < 900)
    {
        List({L"Nobody"});
    }
    EXPECT_EQ(Infos("H1"), 1);
    EXPECT_TRUE(problem.IsEmpty());

    list.GetAt(0)->firstName = L"";
    while (list.GetCount() < 1100)
    {
        List({L"Nobody"});
    }
    EXPECT_EQ(Infos("H1"), 0);
    EXPECT_EQ(FirstNameOf(0), L"");
    ExpectOneDatabaseError();
}

TEST_F(HolderFailures, LookUpsWorkAgainAfterAFailure)
{
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Ana Ruiz"));

    EXPECT_EQ(Names(L"Pat O'Brien"), 0);
    EXPECT_EQ(Names(L"Ana Ruiz"), 1);
    EXPECT_EQ(std::wstring(firstName), L"Ana");
}

TEST_F(HolderFailures, ProblemKeepsTheFirstError)
{
    problem = "earlier";

    EXPECT_EQ(Names(L"Pat O'Brien"), 0);
    EXPECT_STREQ(problem.SafeGetString(), "earlier");
}

TEST_F(HolderFailures, DatabaseErrorAfterTheFirstRowKeepsTheNamesFound)
{
    if (!RunsOnSqlite())
    {
        GTEST_SKIP() << "needs a product that fails while it reads";
    }
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Shared"))
        .With(Holder(L"H2").Named(L"Bo", L"Dahl").Certificate(L"Shared"));
    FailOnRead(tables, L"SSR_HOLDER", {L"HUID", L"VPNAME", L"FNAME", L"LNAME"}, L"OPPOSITION",
               L"HUID='H2'");
    ReadRowByRow();

    EXPECT_EQ(Names(L"Shared"), 1);
    EXPECT_EQ(std::wstring(firstName), L"Ana");
    ExpectOneDatabaseError();
}

TEST_F(HolderFailures, DatabaseErrorAfterAMatchKeepsTheMatch)
{
    if (!RunsOnSqlite())
    {
        GTEST_SKIP() << "needs a product that fails while it reads";
    }
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"One").Certificate(L"Two", L"BAD"));
    FailOnRead(tables, L"SSR_HOLDERID", {L"HUID", L"CN", L"EXPIRDATE"}, L"SERIAL", L"SERIAL='BAD'");
    ReadRowByRow();
    List({L"One", L"Two"});

    EXPECT_EQ(Infos("H1"), 1);
    EXPECT_EQ(FirstNameOf(0), L"Ana");
    EXPECT_EQ(FirstNameOf(1), L"");
    ExpectOneDatabaseError();
}

TEST_F(HolderFailures, AnyOtherExceptionInTheLookUpByCertificateIsUnknown)
{
    {
        const AllocationLimit limit(kLimit);
        EXPECT_EQ(Names(huge.c_str()), 0);
    }
    ExpectBuffersUntouched();
    EXPECT_EQ(trace.Lines(), "Exception|Unknown from GetSignerNames\n");
    EXPECT_STREQ(problem.SafeGetString(), "Unknown from GetSignerNames");
}

TEST_F(HolderFailures, AnyOtherExceptionInTheLookUpOfTheHolderIsUnknown)
{
    List({huge.c_str()});
    {
        const AllocationLimit limit(kLimit);
        EXPECT_EQ(Infos("H1"), 0);
    }
    ExpectBuffersUntouched();
    EXPECT_EQ(trace.Lines(), "Exception|Unknown from GetSignerInfos\n");
    EXPECT_STREQ(problem.SafeGetString(), "Unknown from GetSignerInfos");
}

} // namespace
