#include "tests/rules/check_fixture.h"

#include "support/codepage.h"

namespace
{

using testing::ElementsAre;
using testing_support::Contract;
using testing_support::Holder;
using testing_support::kNone;
using testing_support::MessageLine;
using testing_support::MessageText;

class SignatureCheck : public testing_support::CheckTest
{
protected:
    static std::wstring AnaWithin(double limit)
    {
        return MessageText(1803, L"Ruiz", L"Ana", L"Ana Ruiz", 100.0, kNone, limit, kNone);
    }
    static std::wstring AnaAbove(double limit)
    {
        return MessageText(1801, L"Ruiz", L"Ana", L"Ana Ruiz", 100.0, kNone, limit, kNone);
    }
};

TEST_F(SignatureCheck, SatisfiedRuleGivesOneRowAndAnInformation)
{
    bank.With(Contract(L"C1").AloneBy(L"H1").UpTo(L"1000.00"));

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictSuccess);
    EXPECT_STREQ(reasonCode.SafeGetString(), "before") << "a success leaves the outputs alone";
    EXPECT_STREQ(reasonText.SafeGetString(), L"before");
    ExpectEvent(0, L"CHECK SIGNATURES RULES SUCCESS\r\n" + AnaWithin(1000.0) + L"\r\n");
    EXPECT_THAT(Column(L"STATUT"), ElementsAre(L"1"));
    EXPECT_THAT(Column(L"MOTIF"), ElementsAre(Stored(AnaWithin(1000.0) + L" : ")));
    EXPECT_TRUE(trail.ran);
    EXPECT_TRUE(trail.rulesComplete);
    EXPECT_TRUE(trail.problem.IsEmpty());
    EXPECT_EQ(trail.rowsDue, 1U);
    EXPECT_EQ(trail.rowsWritten, 1U);
}

TEST_F(SignatureCheck, BrokenRuleWritesTheReasonAndARefusal)
{
    bank.With(Contract(L"C1").AloneBy(L"H1").UpTo(L"99.99"));

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictFailed);
    EXPECT_STREQ(reasonCode.SafeGetString(), "AM02");
    EXPECT_EQ(std::wstring(reasonText.SafeGetString()), AnaAbove(99.99));
    ExpectEvent(2, L"CHECK SIGNATURES RULES FAILED\r\n" + AnaAbove(99.99) + L"\r\n");
    EXPECT_THAT(Column(L"STATUT"), ElementsAre(L"2"));
}

TEST_F(SignatureCheck, NoRuleWritesTheReasonOneRowAndAnError)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    const std::wstring finding = MessageText(1805, L"Bo Dahl");

    EXPECT_EQ(Check(L"Bo Dahl"), rules::kVerdictNoRule);
    EXPECT_STREQ(reasonCode.SafeGetString(), "NARR");
    EXPECT_EQ(std::wstring(reasonText.SafeGetString()), MessageText(1816));
    ExpectEvent(1, L"CHECK SIGNATURES RULES NOT FOUND\r\n" + finding + L"\r\n");
    EXPECT_THAT(Column(L"STATUT"), ElementsAre(L"0"));
    EXPECT_THAT(Column(L"TYPE_CTRL"), ElementsAre(L"0"));
    EXPECT_THAT(Column(L"MOTIF"), ElementsAre(finding));
    EXPECT_THAT(Column(L"CNS"), ElementsAre(L"Bo Dahl"));
    EXPECT_EQ(trail.rowsDue, 1U);
    EXPECT_EQ(trail.rowsWritten, 1U);
    EXPECT_TRUE(trail.ran);
}

TEST_F(SignatureCheck, ContractThatNobodyKnowsIsWithoutRule)
{
    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictNoRule);
    EXPECT_TRUE(trail.rulesComplete);
    EXPECT_EQ(RowCount(), 1U);
}

TEST_F(SignatureCheck, InactiveContractIsWithoutRule)
{
    bank.With(Contract(L"C1").Opposition(L"1").AloneBy(L"H1"));

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictNoRule);
    ExpectEvent(1, L"CHECK SIGNATURES RULES NOT FOUND\r\n" + MessageLine(1819) +
                       MessageLine(1805, L"Ana Ruiz"));
}

TEST_F(SignatureCheck, ContractThatAllowsAllSignersSucceedsWithoutRuleLines)
{
    bank.With(Contract(L"C1").AllHolders().WithoutRules());

    EXPECT_EQ(Check(L"Bo Dahl;Nobody"), rules::kVerdictSuccess);
    ExpectEvent(0, L"CHECK SIGNATURES RULES SUCCESS\r\n" + MessageLine(1807));
    EXPECT_THAT(Column(L"SIGNER1"), ElementsAre(L"Bo Dahl"));
    EXPECT_THAT(Column(L"MOTIF"), ElementsAre(L" : " + MessageText(1807)));
}

TEST_F(SignatureCheck, SuccessThenFailureIsRefusedWithBothRows)
{
    bank.With(Contract(L"C1").AloneBy(L"H1").UpTo(L"1000.00").AloneBy(L"H1").UpTo(L"50.00"));

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictFailed);
    EXPECT_EQ(std::wstring(reasonText.SafeGetString()), AnaAbove(50.0));
    EXPECT_THAT(Column(L"STATUT"), ElementsAre(L"2", L"2"));
    EXPECT_THAT(Column(L"MOTIF"),
                ElementsAre(Stored(AnaWithin(1000.0) + L" : "), Stored(AnaAbove(50.0) + L" : ")));
    ExpectEvent(2, L"CHECK SIGNATURES RULES FAILED\r\n" + AnaWithin(1000.0) + L"\r\n" +
                       AnaAbove(50.0) + L"\r\n");
    EXPECT_EQ(trail.rowsDue, 2U);
    EXPECT_EQ(trail.rowsWritten, 2U);
}

TEST_F(SignatureCheck, FailureThenSuccessIsRefusedWithBothRows)
{
    bank.With(Contract(L"C1").AloneBy(L"H1").UpTo(L"50.00").AloneBy(L"H1").UpTo(L"1000.00"));

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictFailed);
    EXPECT_EQ(std::wstring(reasonText.SafeGetString()), AnaAbove(50.0));
    EXPECT_THAT(Column(L"STATUT"), ElementsAre(L"2", L"2"));
    EXPECT_THAT(Column(L"MOTIF"),
                ElementsAre(Stored(AnaAbove(50.0) + L" : "), Stored(AnaWithin(1000.0) + L" : ")));
}

TEST_F(SignatureCheck, RuleWithoutRecordDoesNotCount)
{
    bank.With(Contract(L"C1").AloneBy(L"H2").AloneBy(L"H1").By(L"H3", L"H4"));

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictSuccess);
    EXPECT_EQ(RowCount(), 1U);
}

struct UnmatchedCase
{
    const char* name;
    Contract contract;
    const wchar_t* signers;
    unsigned int finding; ///< 0: the rule adds no line
    bool showsTheSigners; ///< in that line
};

class UnmatchedRule : public SignatureCheck, public testing::WithParamInterface<UnmatchedCase>
{
};

TEST_P(UnmatchedRule, IsNoRuleAndNoRefusal)
{
    bank.With(GetParam().contract);
    std::wstring lines;
    if (GetParam().finding != 0)
    {
        lines = GetParam().showsTheSigners ? MessageLine(GetParam().finding, GetParam().signers)
                                           : MessageLine(GetParam().finding);
    }

    EXPECT_EQ(Check(GetParam().signers), rules::kVerdictNoRule);
    EXPECT_STREQ(reasonCode.SafeGetString(), "NARR");
    ExpectEvent(1, L"CHECK SIGNATURES RULES NOT FOUND\r\n" + lines +
                       MessageLine(1805, GetParam().signers));
    EXPECT_THAT(Column(L"STATUT"), ElementsAre(L"0"));
    EXPECT_THAT(Column(L"SIGNER1"), ElementsAre(Stored(L" ")));
    EXPECT_THAT(Column(L"SIGNER2"), ElementsAre(Stored(L" ")));
}

const UnmatchedCase kUnmatched[] = {
    {"SignerNotFound", Contract(L"C1").AloneBy(L"H1"), L"Nobody", 0, false},
    {"HolderMissing", Contract(L"C1").DoubleSignature().By(L"H1", L"H2"), L"Ana Ruiz;Nobody", 1809,
     true},
    {"HolderSignsAlone", Contract(L"C1").AloneBy(L"H1"), L"Ana Ruiz;Bo Dahl", 1817, false},
    {"BlockedContract", Contract(L"C1").AllHolders().Opposition(L"1").WithoutRules(), L"Ana Ruiz",
     1819, false},
};

INSTANTIATE_TEST_SUITE_P(Rules, UnmatchedRule, testing::ValuesIn(kUnmatched),
                         [](const auto& row) { return row.param.name; });

TEST_F(SignatureCheck, OneCertificateOfBothHoldersEmptiesTheReason)
{
    bank.With(Holder(L"S1").Named(L"", L"One").Certificate(L"Shared"))
        .With(Holder(L"S2").Named(L"Su", L"Two").Certificate(L"Shared"))
        .With(Contract(L"C1").DoubleSignature().By(L"S1", L"S2"));

    EXPECT_EQ(Check(L"Shared"), rules::kVerdictFailed);
    EXPECT_TRUE(reasonCode.IsEmpty());
    EXPECT_TRUE(reasonText.IsEmpty());
    EXPECT_THAT(Column(L"MOTIF"),
                ElementsAre(L" : " + MessageText(1818, L"", L"One", L"Shared", L"Su", L"Two")));
}

TEST_F(SignatureCheck, RowHoldsTheWholeDecision)
{
    bank.With(Contract(L"C1").DoubleSignature().By(L"H1", L"H2").OrdersUpTo(L"1000.00"));
    total = 1234.5;

    EXPECT_EQ(Check(L"Bo Dahl;Ana Ruiz"), rules::kVerdictSuccess);
    const auto rows = tables.Query(
        L"SELECT SERVER,STATUT,VPNAME,TYPE_PTC,VFNAME,VCNAME,IDFICVFS,ORDERID,TYPE_CTRL,SIGNER1,"
        L"SIGNER2,CNS,FILENAME FROM HST_SIGNRULES");
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_THAT(rows[0], ElementsAre(L"1", L"1", L"PARTNER1", L"9", L"SERVICE1", L"CLIENT1", L"42",
                                     L"ORDER1", L"1", L"Ana Ruiz", L"Bo Dahl", L"Bo Dahl;Ana Ruiz",
                                     L"order.xml"));
    EXPECT_EQ(tables
                  .Query(L"SELECT 1 FROM HST_SIGNRULES WHERE TOTAL = 1234.5 AND MAXORDER = 60 "
                         L"AND DATETIME IS NOT NULL")
                  .size(),
              1U);
}

TEST_F(SignatureCheck, LettersBeyondAsciiReachTheRow)
{
    bank.With(Holder(L"H3").Named(L"Z\u00F6e", L"\u0141\u00F3d\u017A").Certificate(L"Z\u00F6e"))
        .With(Contract(L"C1").AloneBy(L"H3"));
    file = "\xE9t\xE9.xml";

    EXPECT_EQ(Check(L"Z\u00F6e"), rules::kVerdictSuccess);
    EXPECT_THAT(Column(L"SIGNER1"), ElementsAre(L"Z\u00F6e \u0141\u00F3d\u017A"));
    EXPECT_THAT(Column(L"CNS"), ElementsAre(L"Z\u00F6e"));
    EXPECT_THAT(Column(L"FILENAME"), ElementsAre(L"\u00E9t\u00E9.xml"));
}

TEST_F(SignatureCheck, SignersOfEarlierChecksStillCount)
{
    bank.With(Contract(L"C1").DoubleSignature().By(L"H1", L"H2"));

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictFailed);
    EXPECT_EQ(Check(L"Bo Dahl"), rules::kVerdictSuccess);
    EXPECT_EQ(signers.GetCount(), 2);
    EXPECT_THAT(Column(L"CNS"), ElementsAre(L"Ana Ruiz", L"Bo Dahl"));
}

TEST_F(SignatureCheck, SignersOfOnlySeparatorsAreWithoutRule)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));

    EXPECT_EQ(Check(L";;"), rules::kVerdictNoRule);
    EXPECT_THAT(Column(L"CNS"), ElementsAre(L";;"));
}

TEST_F(SignatureCheck, NullSignersCountAsNone)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));

    EXPECT_EQ(Check(nullptr), rules::kVerdictNoRule);
    EXPECT_THAT(Column(L"CNS"), ElementsAre(L""));
}

TEST_F(SignatureCheck, DistributedSignaturesArriveOneByOne)
{
    bank.With(Contract(L"C1").DoubleSignature().By(L"H1", L"H2"));
    contract.veu = true;

    EXPECT_EQ(Check(L"Bo Dahl"), rules::kVerdictSuccess);
    EXPECT_TRUE(trace.Has("VEU      |YES"));
}

TEST_F(SignatureCheck, TrailStartsAfreshWithEachCheck)
{
    EXPECT_EQ(Check(L"Pat O'Brien"), rules::kVerdictNoRule);
    EXPECT_FALSE(trail.problem.IsEmpty());

    bank.With(Contract(L"C1").AllHolders().WithoutRules());
    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictSuccess);
    EXPECT_TRUE(trail.ran);
    EXPECT_EQ(trail.rowsWritten, 1U);
}

TEST_F(SignatureCheck, CallersSignerListIsNotChanged)
{
    const std::wstring list = L"Ana Ruiz;;Bo Dahl;";
    Check(list.c_str());
    EXPECT_EQ(list, L"Ana Ruiz;;Bo Dahl;");
}

TEST_F(SignatureCheck, TraceTellsTheContext)
{
    bank.With(Contract(L"C1").AllHolders().WithoutRules());

    Check(L"Nobody");
    const std::string lines = trace.Lines();
    EXPECT_EQ(lines.rfind("[SIGNERS]\n"
                          "#Signer|Nobody\n"
                          "[SIGNATURES RULES SEARCH]\n"
                          "Partner  |PARTNER1\n"
                          "Protocol |EBICS\n"
                          "Service  |SERVICE1\n"
                          "Client   |CLIENT1\n"
                          "Mode     |SRV\n"
                          "VEU      |NO\n"
                          "[CONTRACTS RULE #0]\n",
                          0),
              0U)
        << lines;
    EXPECT_TRUE(lines.ends_with("[CHECK CONTRACTS RULE #0]\n"
                                "CUID Rule|C1\n"
                                "#RULE SUCCEEDDED|ALL SIGNERS ALLOWED!\n"
                                "[CHECK SIGNATURES RULES SUCCESS]\n"))
        << lines;
}

TEST_F(SignatureCheck, TraceTellsThatNoRuleWasFound)
{
    contract.serverMode = false;

    Check(L"Nobody");
    const std::string lines = trace.Lines();
    EXPECT_TRUE(trace.Has("Mode     |DEM"));
    EXPECT_TRUE(lines.ends_with("[SIGNERS FOUND #0]\n"
                                "#RULE4 FAILED|NO RULES FOUND FOR SIGNERS !!!\n"
                                "[CHECK SIGNATURES RULES NOT FOUND]\n"))
        << lines;
}

TEST_F(SignatureCheck, RefusalIsTracedAsSuch)
{
    bank.With(Contract(L"C1").AloneBy(L"H1").UpTo(L"1.00"));

    Check(L"Ana Ruiz");
    EXPECT_TRUE(trace.Lines().ends_with("#RULE2 FAILED|" + support::Utf8FromWide(AnaAbove(1.0)) +
                                        "\n[CHECK SIGNATURES RULES FAILED]\n"));
}

// The session's connection.

TEST_F(SignatureCheck, ConnectionIsOpenedByTheFirstCheckAndKept)
{
    EXPECT_EQ(session.Get(), nullptr);
    Check(L"Ana Ruiz");
    const CDatabase* const first = session.Get();
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(first->IsOpen());

    Check(L"Ana Ruiz");
    EXPECT_EQ(session.Get(), first);
}

TEST_F(SignatureCheck, WithoutConnectionStringNothingIsJudged)
{
    connexionString = "";

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictFailed);
    ExpectNotRun("DSN not defined");
    EXPECT_EQ(session.Get(), nullptr);
    EXPECT_EQ(signers.GetCount(), 1) << "the signers are appended all the same";
    EXPECT_TRUE(trace.Lines().ends_with("VEU      |NO\nError|DSN not defined\n"));
}

TEST_F(SignatureCheck, NullConnectionStringIsLikeAnEmptyOne)
{
    withoutConnexionString = true;

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictFailed);
    ExpectNotRun("DSN not defined");
}

TEST_F(SignatureCheck, OpenSessionDoesNotHelpAnEmptyConnectionString)
{
    Check(L"Ana Ruiz");
    journal.events.clear();
    tables.Execute(L"DELETE FROM HST_SIGNRULES");
    reasonCode = "before";
    reasonText = L"before";
    connexionString = "";

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictFailed);
    ExpectNotRun("DSN not defined");
}

} // namespace
