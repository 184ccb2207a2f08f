#include "support/codepage.h"
#include "tests/rules/evaluation_fixture.h"
#include "tests/signers/failing_rows.h"

namespace
{

using testing_support::AloneRule;
using testing_support::Holder;
using testing_support::kNone;
using testing_support::MessageLine;
using testing_support::MessageText;
using testing_support::PairRule;

class RuleEvaluation : public testing_support::EvaluationTest
{
};

std::wstring Certificate(const signerInfo& signer)
{
    return signer.certificate.SafeGetString();
}

std::wstring Name(const signerInfo& signer)
{
    return std::wstring(signer.firstName.SafeGetString()) + L"/" + signer.lastName.SafeGetString();
}

TEST_F(RuleEvaluation, OneHolderWithinTheLimitSucceeds)
{
    SignedBy({L"Ana Ruiz"});
    Evaluate({AloneRule("H1")});

    const ruleSign& decision = Only();
    EXPECT_EQ(decision.status, rules::kStatusSuccess);
    EXPECT_STREQ(decision.cuid.SafeGetString(), "C1");
    EXPECT_TRUE(decision.comment.IsEmpty());
    EXPECT_EQ(Code(), "");
    EXPECT_EQ(Reason(),
              MessageText(1803, L"Ruiz", L"Ana", L"Ana Ruiz", 100.0, kNone, 1000.0, kNone));
    EXPECT_EQ(Message(), L"");
    EXPECT_EQ(Certificate(decision.signer1), L"Ana Ruiz");
    EXPECT_EQ(Name(decision.signer1), L"Ana/Ruiz");
    EXPECT_EQ(Certificate(decision.signer2), L"");
    EXPECT_EQ(Journalled(), Reason() + L"\r\n");
}

TEST_F(RuleEvaluation, TwoHoldersWithinTheLimitSucceed)
{
    SignedBy({L"bo dahl", L"ana ruiz"});
    Evaluate({PairRule("H1", "H2")});

    const ruleSign& decision = Only();
    EXPECT_EQ(decision.status, rules::kStatusSuccess);
    EXPECT_EQ(Reason(), MessageText(1822, L"Ruiz", L"Ana", L"Ana Ruiz", L"Dahl", L"Bo", L"Bo Dahl",
                                    100.0, kNone, 1000.0, kNone));
    EXPECT_EQ(Certificate(decision.signer1), L"Ana Ruiz") << "as the bank writes it";
    EXPECT_EQ(Name(decision.signer1), L"Ana/Ruiz");
    EXPECT_EQ(Certificate(decision.signer2), L"Bo Dahl");
    EXPECT_EQ(Name(decision.signer2), L"Bo/Dahl");
    EXPECT_EQ(Journalled(), Reason() + L"\r\n");
}

TEST_F(RuleEvaluation, SuccessByOneHolderOnTheLargestOrderShowsThatOrder)
{
    SignedBy({L"Ana Ruiz"});
    cuidRule rule = AloneRule("H1");
    rule.tlevel = 1;
    Evaluate({rule});

    EXPECT_EQ(Reason(),
              MessageText(1823, L"Ruiz", L"Ana", L"Ana Ruiz", 60.0, kNone, 1000.0, kNone));
    EXPECT_EQ(Only().controlType, 1);
}

TEST_F(RuleEvaluation, SuccessByTwoHoldersOnTheLargestOrderShowsTheTotal)
{
    SignedBy({L"Ana Ruiz", L"Bo Dahl"});
    cuidRule rule = PairRule("H1", "H2");
    rule.tlevel = 1;
    Evaluate({rule});

    EXPECT_EQ(Reason(), MessageText(1822, L"Ruiz", L"Ana", L"Ana Ruiz", L"Dahl", L"Bo", L"Bo Dahl",
                                    100.0, kNone, 1000.0, kNone));
}

TEST_F(RuleEvaluation, SecondHolderOfADistributedOrderSucceedsByHimself)
{
    veu = true;
    SignedBy({L"Bo Dahl"});
    Evaluate({PairRule("H1", "H2")});

    EXPECT_EQ(Only().status, rules::kStatusSuccess);
    EXPECT_EQ(Reason(), MessageText(1803, L"Dahl", L"Bo", L"Bo Dahl", 100.0, kNone, 1000.0, kNone));
    EXPECT_EQ(Certificate(Only().signer1), L"");
    EXPECT_EQ(Certificate(Only().signer2), L"Bo Dahl");
}

TEST_F(RuleEvaluation, InactiveContractIsJournalledAndLeavesNoRecord)
{
    SignedBy({L"Ana Ruiz"});
    cuidRule rule = AloneRule("H1");
    rule.active = 0;
    rule.allHolders = 1;
    Evaluate({rule});

    EXPECT_EQ(decisions.GetCount(), 0);
    EXPECT_EQ(Journalled(), MessageLine(1819));
    EXPECT_TRUE(trace.Has("#RULE8 FAILED|CONTRACT NOT ACTIVE!"));
}

class AllHoldersRule : public RuleEvaluation
{
protected:
    void EvaluateOpenRule()
    {
        cuidRule rule = AloneRule("");
        rule.allHolders = 1;
        rule.profile = 0;
        rule.amount = 0.0;
        Evaluate({rule});
        EXPECT_EQ(Only().status, rules::kStatusSuccess);
        EXPECT_EQ(Message(), MessageText(1807));
        EXPECT_EQ(Reason(), L"");
        EXPECT_EQ(Journalled(), MessageLine(1807));
        EXPECT_TRUE(trace.Has("#RULE SUCCEEDDED|ALL SIGNERS ALLOWED!"));
    }
};

TEST_F(AllHoldersRule, AcceptsOneSigner)
{
    SignedBy({L"ANA RUIZ"});
    EvaluateOpenRule();

    EXPECT_EQ(Certificate(Only().signer1), L"ANA RUIZ") << "as it came in the list";
    EXPECT_EQ(Name(Only().signer1), L"Ana/Ruiz");
    EXPECT_EQ(Certificate(Only().signer2), L"");
}

TEST_F(AllHoldersRule, NamesTwoSignersAndLooksUpNoMore)
{
    SignedBy({L"Ana Ruiz", L"Bo Dahl", L"Cy Noir"});
    EvaluateOpenRule();

    EXPECT_EQ(Name(Only().signer1), L"Ana/Ruiz");
    EXPECT_EQ(Name(Only().signer2), L"Bo/Dahl");
    EXPECT_EQ(trace.Count("SIGNER NAME-------|---------------------------"), 2);
}

TEST_F(AllHoldersRule, AcceptsSignersThatNobodyKnows)
{
    SignedBy({L"Nobody", L"Bo Dahl"});
    EvaluateOpenRule();

    EXPECT_EQ(Certificate(Only().signer1), L"");
    EXPECT_EQ(Name(Only().signer1), L"/");
    EXPECT_EQ(Certificate(Only().signer2), L"Bo Dahl");
}

TEST_F(AllHoldersRule, AcceptsAnOrderWithoutSigners)
{
    EvaluateOpenRule();
    EXPECT_EQ(Certificate(Only().signer1), L"");
}

TEST_F(AllHoldersRule, AcceptsAHolderInOppositionAndAnyAmount)
{
    total = 1e12;
    SignedBy({L"Cy Noir"});
    EvaluateOpenRule();

    EXPECT_EQ(Name(Only().signer1), L"Cy/Noir");
}

TEST_F(RuleEvaluation, RuleOfOtherHoldersLeavesNoRecordAndNoLine)
{
    SignedBy({L"Bo Dahl"});
    Evaluate({AloneRule("H1")});

    EXPECT_EQ(decisions.GetCount(), 0);
    EXPECT_EQ(Journalled(), L"");
    EXPECT_TRUE(trace.Has("Warning|#Signer not found"));
}

TEST_F(RuleEvaluation, SecondHolderIsNotLookedUpWhenTheFirstSignsAlone)
{
    SignedBy({L"Bo Dahl"});
    cuidRule rule = PairRule("H1", "H2");
    rule.alone = 1;
    Evaluate({rule});

    EXPECT_EQ(decisions.GetCount(), 0);
    EXPECT_TRUE(trace.Has("Warning|#Signer not found"));
}

TEST_F(RuleEvaluation, WithoutSignersNoRuleConcernsThem)
{
    Evaluate({AloneRule("H1"), PairRule("H1", "H2")});

    EXPECT_EQ(decisions.GetCount(), 0);
    EXPECT_EQ(trace.Count("Warning|#Signer not found"), 2);
}

// The first holder has no first name, so it does not mark the certificate as taken.
TEST_F(RuleEvaluation, OneCertificateOfBothHoldersIsRefusedWithoutReasonCode)
{
    bank.With(Holder(L"S1").Named(L"", L"One").Certificate(L"shared key"))
        .With(Holder(L"S2").Named(L"Su", L"Two").Certificate(L"SHARED KEY").Blocked());
    SignedBy({L"Shared Key"});
    total = 5000.0;
    Evaluate({PairRule("S1", "S2")});

    EXPECT_EQ(Only().status, rules::kStatusFailed);
    EXPECT_EQ(Code(), "");
    EXPECT_EQ(Reason(), L"");
    EXPECT_EQ(Message(), MessageText(1818, L"", L"One", L"shared key", L"Su", L"Two"));
    EXPECT_EQ(Journalled(), Message() + L"\r\n");
    EXPECT_TRUE(trace.Has("Warning|#Signers with same certificates"));
}

TEST_F(RuleEvaluation, CertificatesThatDifferInTheirLastCharacterAreTwo)
{
    if (!testing_support::RunsOnSqlite())
    {
        GTEST_SKIP() << "needs a product that keeps texts beyond their column's length";
    }
    const std::wstring start(signers::kNameCapacity - 2U, L'x');
    bank.With(Holder(L"S1").Named(L"Su", L"One").Certificate(start + L'1'))
        .With(Holder(L"S2").Named(L"Su", L"Two").Certificate(start + L'2'));
    SignedBy({(start + L'1').c_str(), (start + L'2').c_str()});
    Evaluate({PairRule("S1", "S2")});

    EXPECT_EQ(Only().status, rules::kStatusSuccess);
    EXPECT_FALSE(trace.Has("Warning|#Signers with same certificates"));
}

TEST_F(RuleEvaluation, OneCertificateServesAtMostOneHolderOfARule)
{
    bank.With(Holder(L"S1").Named(L"Su", L"One").Certificate(L"Shared"))
        .With(Holder(L"S2").Named(L"Su", L"Two").Certificate(L"Shared"));
    SignedBy({L"Shared", L"Shared"});
    Evaluate({PairRule("S1", "S2")});

    EXPECT_EQ(decisions.GetCount(), 0);
    EXPECT_TRUE(trace.Has("#RULE6 FAILED|R\xC3\xA8gle manquantes"));
}

TEST_F(RuleEvaluation, EachRuleFindsTheSignersFree)
{
    SignedBy({L"Ana Ruiz"});
    Evaluate({AloneRule("H1"), AloneRule("H1")});

    ASSERT_EQ(decisions.GetCount(), 2);
    EXPECT_EQ(decisions.GetAt(1)->status, rules::kStatusSuccess);
    EXPECT_TRUE(signers.GetAt(0)->firstName.IsEmpty()) << "the session's list stays as it is";
}

TEST_F(RuleEvaluation, EveryRuleJudgesTheSignersThatWereThereAtTheBeginning)
{
    SignedBy({L"Ana Ruiz", L"Bo Dahl"});
    Evaluate({AloneRule("H1"), AloneRule("H2")}, 1);

    EXPECT_EQ(Only().status, rules::kStatusSuccess) << "the second signature came too late";
    EXPECT_STREQ(Only().signer1.certificate.SafeGetString(), L"Ana Ruiz");
}

TEST_F(RuleEvaluation, DecisionsKeepTheOrderOfTheRules)
{
    SignedBy({L"Ana Ruiz"});
    cuidRule low = AloneRule("H1");
    low.amount = 1.0;
    std::strcpy(low.cuid, "LOW");
    cuidRule high = AloneRule("H1");
    std::strcpy(high.cuid, "HIGH");
    Evaluate({low, AloneRule("H2"), high});

    ASSERT_EQ(decisions.GetCount(), 2);
    EXPECT_STREQ(decisions.GetAt(0)->cuid.SafeGetString(), "LOW");
    EXPECT_EQ(decisions.GetAt(0)->status, rules::kStatusFailed);
    EXPECT_STREQ(decisions.GetAt(1)->cuid.SafeGetString(), "HIGH");
    EXPECT_EQ(decisions.GetAt(1)->status, rules::kStatusSuccess);
    EXPECT_EQ(Journalled(), std::wstring(decisions.GetAt(0)->reasonText.SafeGetString()) + L"\r\n" +
                                decisions.GetAt(1)->reasonText.SafeGetString() + L"\r\n");
}

// The trace of a whole rule.

TEST_F(RuleEvaluation, TraceTellsTheStepsOfARule)
{
    SignedBy({L"Ana Ruiz"});
    Evaluate({AloneRule("H2"), AloneRule("H1")});

    const std::string text = trace.Lines();
    const std::string from = text.substr(text.find("[CHECK CONTRACTS RULE #1]"));
    EXPECT_EQ(from, "[CHECK CONTRACTS RULE #1]\n"
                    "CUID Rule|C1\n"
                    "SIGNER INFO-------|---------------------------\n"
                    "HUID Signer       |H1\n"
                    "HUID FirstName    |Ana\n"
                    "HUID LastName     |Ruiz\n"
                    "HUID Certificate  |Ana Ruiz\n"
                    "HUID Serial Number|01\n"
                    "HUID Is Opposition|0\n"
                    "CHECK PROFIL RULE-|---------------------------\n"
                    "CHECK AMOUNT RULE-|---------------------------\n"
                    "#RULE SUCCEEDDED|" +
                        support::Utf8FromWide(Reason()) + "\n");
    EXPECT_EQ(text.rfind("[CHECK CONTRACTS RULE #0]\nCUID Rule|C1\nWarning|#Signer not found\n", 0),
              0U);
}

} // namespace
