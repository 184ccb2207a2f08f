// Texts that would leave their literal and make one valid statement of another meaning.

#include "tests/rules/check_fixture.h"

namespace
{

using testing::HasSubstr;
using testing_support::Contract;
using testing_support::Holder;
using testing_support::MessageLine;

class ForgedStatement : public testing_support::CheckTest
{
protected:
    void ExpectNothingWritten()
    {
        EXPECT_EQ(trail.rowsDue, 1U);
        EXPECT_EQ(trail.rowsWritten, 0U);
        EXPECT_EQ(RowCount(), 0U);
        EXPECT_THAT(trace.Lines(), HasSubstr("\n***Exception|SignRules"));
        EXPECT_EQ(journal.events.size(), 1U);
    }
};

TEST_F(ForgedStatement, SignerThatAddsHoldersOfItsOwnSignsForNobody)
{
    bank.With(Contract(L"C1").DoubleSignature().By(L"H1", L"H2"));

    EXPECT_EQ(Check(L"Eve;Bob;x')) UNION SELECT 'h','p','F','L','0','Bob','1','1' UNION SELECT "
                    L"'h','p','F','L','0','Eve','1','1'--"),
              rules::kVerdictNoRule);
    EXPECT_STREQ(reasonCode.SafeGetString(), "NARR");
    EXPECT_TRUE(trail.rulesComplete);
    EXPECT_FALSE(trail.lookupsComplete);
    EXPECT_STREQ(trail.problem.SafeGetString(),
                 "[42000] The certificate name has an apostrophe without a partner, which would "
                 "end its literal in the statement: write it without apostrophes.");
    EXPECT_TRUE(trace.Has(std::string("Exception|") + trail.problem.SafeGetString()));
    ExpectNothingWritten();
}

TEST_F(ForgedStatement, SignerThatAddsANameIsNotRecordedUnderIt)
{
    bank.With(Contract(L"C1").AllHolders().WithoutRules());

    EXPECT_EQ(Check(L"x') UNION SELECT 'h','p','Ana','Ruiz','0','Eve','1','1'--"),
              rules::kVerdictSuccess)
        << "any signer is allowed";
    EXPECT_FALSE(trail.lookupsComplete);
    EXPECT_FALSE(trace.Has("HUID FirstName    |Ana"));
    ExpectNothingWritten();
}

TEST_F(ForgedStatement, ClientThatAsksForEveryContractGetsNoRule)
{
    bank.With(Contract(L"C1").DoubleSignature().By(L"H1", L"H2"));
    contract.veu = true;
    contract.client = "' OR 1--";

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictNoRule);
    EXPECT_FALSE(trail.rulesComplete);
    EXPECT_TRUE(trail.lookupsComplete);
    EXPECT_STREQ(trail.problem.SafeGetString(),
                 "[42000] The client, cut to 8 characters, has an apostrophe without a partner, "
                 "which would end its literal in the statement: write it without apostrophes.");
    EXPECT_FALSE(trace.Has("[CONTRACTS RULE #0]"));
    ExpectNothingWritten();
}

TEST_F(ForgedStatement, HolderIdentifierThatAsksForEveryHolderFindsNobody)
{
    bank.With(Contract(L"C1").AloneBy(L"' OR H.HUID='H1"));

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictNoRule);
    EXPECT_FALSE(trail.lookupsComplete);
    EXPECT_THAT(trail.problem.SafeGetString(),
                HasSubstr("The holder identifier has an apostrophe"));
    EXPECT_EQ(RowCount(), 1U) << "the row holds no text of the look-up";
}

TEST_F(ForgedStatement, FileNameThatAddsASecondRowWritesNone)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    file = "x'),(1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,'y";

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictSuccess);
    EXPECT_TRUE(trail.lookupsComplete);
    EXPECT_THAT(trail.problem.SafeGetString(), HasSubstr("The file name, cut to 256 characters,"));
    ExpectNothingWritten();
}

TEST_F(ForgedStatement, FileNameThatAddsASecondRowWritesNoneWithoutARuleEither)
{
    file = "x'),(1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,'y";

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictNoRule);
    EXPECT_THAT(trail.problem.SafeGetString(), HasSubstr("The file name, cut to 256 characters,"));
    ExpectNothingWritten();
}

TEST_F(ForgedStatement, LostRowIsTracedWithCauseBeforeOperation)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    file = "x'y";
    Check(L"Ana Ruiz");

    EXPECT_TRUE(trace.Has("***Exception|SignRules: error 0A28001A, return code -1, " +
                          std::string(trail.problem.SafeGetString()) + ", ExecuteSQLW"));
}

TEST_F(ForgedStatement, SignerListThatBringsAmountsOfItsOwnWritesNoRow)
{
    bank.With(Contract(L"C1").AllHolders().WithoutRules());

    EXPECT_EQ(Check(L"Ana Ruiz;x',0,0,'f')--"), rules::kVerdictSuccess);
    EXPECT_THAT(trace.Lines(), HasSubstr("The signer list, cut to 2048 characters,"));
    ExpectNothingWritten();
}

TEST_F(ForgedStatement, HolderNameCutInsideADoubledQuoteBringsNothingOfItsOwn)
{
    bank.With(Holder(L"H3")
                  .Named(std::wstring(254, L'f') + L"'", L"','','',0,0,'forged')--")
                  .Certificate(L"Third"))
        .With(Contract(L"C1").AllHolders().WithoutRules());

    EXPECT_EQ(Check(L"Third"), rules::kVerdictSuccess);
    EXPECT_THAT(trail.problem.SafeGetString(),
                HasSubstr("The first name of signer 1, cut to 255 characters,"));
    ExpectNothingWritten();
}

} // namespace
