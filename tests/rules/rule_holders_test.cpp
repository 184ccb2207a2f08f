#include "support/codepage.h"
#include "tests/rules/evaluation_fixture.h"

namespace
{

using testing_support::AloneRule;
using testing_support::Holder;
using testing_support::kNone;
using testing_support::MessageLine;
using testing_support::MessageText;
using testing_support::PairRule;

class RuleHolders : public testing_support::EvaluationTest
{
protected:
    static std::wstring Certificate(const signerInfo& signer)
    {
        return signer.certificate.SafeGetString();
    }
};

// Opposition.

TEST_F(RuleHolders, BlockedHolderIsRefusedBeforeTheAmountIsLookedAt)
{
    total = 5000.0;
    SignedBy({L"Cy Noir"});
    Evaluate({AloneRule("H3")});

    EXPECT_EQ(Only().status, rules::kStatusFailed);
    EXPECT_EQ(Code(), "AM02");
    EXPECT_EQ(Reason(), MessageText(1800, L"Noir", L"Cy", L"Cy Noir", 5000.0, kNone));
    EXPECT_EQ(Message(), L"");
    EXPECT_EQ(Journalled(), Reason() + L"\r\n");
    EXPECT_EQ(trace.Count("CHECK AMOUNT RULE-|---------------------------"), 0);
    EXPECT_TRUE(trace.Has("#RULE1 FAILED|" + support::Utf8FromWide(Reason())));
}

TEST_F(RuleHolders, BlockedHolderIsRefusedBeforeTheSignersAreCounted)
{
    SignedBy({L"Cy Noir", L"Bo Dahl", L"Ana Ruiz"});
    Evaluate({AloneRule("H3")});

    EXPECT_EQ(Only().status, rules::kStatusFailed);
    EXPECT_EQ(Journalled(), MessageLine(1800, L"Noir", L"Cy", L"Cy Noir", 100.0, kNone));
    EXPECT_FALSE(trace.Has("warning|too much signers !!!"));
}

TEST_F(RuleHolders, SecondHolderInOppositionIsRefused)
{
    SignedBy({L"Ana Ruiz", L"Cy Noir"});
    Evaluate({PairRule("H1", "H3")});

    EXPECT_EQ(Only().status, rules::kStatusFailed);
    EXPECT_EQ(Reason(), MessageText(1800, L"Noir", L"Cy", L"Cy Noir", 100.0, kNone));
    EXPECT_EQ(Certificate(Only().signer1), L"Ana Ruiz");
    EXPECT_EQ(Certificate(Only().signer2), L"Cy Noir");
}

TEST_F(RuleHolders, SecondHolderInOppositionIsRefusedWhenTheFirstDidNotSign)
{
    SignedBy({L"Cy Noir"});
    Evaluate({PairRule("H1", "H3")});

    EXPECT_EQ(Only().status, rules::kStatusFailed);
    EXPECT_EQ(Reason(), MessageText(1800, L"Noir", L"Cy", L"Cy Noir", 100.0, kNone));
}

TEST_F(RuleHolders, FirstOfTwoBlockedHoldersIsNamed)
{
    bank.With(Holder(L"H4").Named(L"Di", L"Vert").Certificate(L"Di Vert").Blocked());
    SignedBy({L"Cy Noir", L"Di Vert"});
    Evaluate({PairRule("H4", "H3")});

    EXPECT_EQ(Reason(), MessageText(1800, L"Vert", L"Di", L"Di Vert", 100.0, kNone));
}

TEST_F(RuleHolders, BlockedHolderThatDidNotSignDoesNoHarm)
{
    veu = true;
    SignedBy({L"Ana Ruiz"});
    Evaluate({PairRule("H3", "H1")});

    EXPECT_EQ(Only().status, rules::kStatusSuccess);
}

TEST_F(RuleHolders, DistributedOrderOfABlockedHolderIsRefused)
{
    veu = true;
    SignedBy({L"Cy Noir"});
    Evaluate({PairRule("H3", "H1")});

    EXPECT_EQ(Only().status, rules::kStatusFailed);
    EXPECT_EQ(Code(), "AM02");
}

// How many signed.

TEST_F(RuleHolders, TooManySignersAreAWarningThatStaysInTheRow)
{
    SignedBy({L"Ana Ruiz", L"Bo Dahl", L"Cy Noir"});
    Evaluate({PairRule("H1", "H2")});

    EXPECT_EQ(Only().status, rules::kStatusSuccess);
    EXPECT_EQ(Message(), MessageText(1812));
    EXPECT_EQ(Journalled(), MessageLine(1812) + Reason() + L"\r\n");
    EXPECT_TRUE(trace.Has("warning|too much signers !!!"));
}

TEST_F(RuleHolders, TooManySignersStayInTheRowOfAnAmountRefusal)
{
    total = 1000.01;
    SignedBy({L"Ana Ruiz", L"Bo Dahl", L"Cy Noir"});
    Evaluate({PairRule("H1", "H2")});

    EXPECT_EQ(Only().status, rules::kStatusFailed);
    EXPECT_EQ(Message(), MessageText(1812));
}

TEST_F(RuleHolders, ProfileMismatchTakesThePlaceOfTheWarning)
{
    SignedBy({L"Ana Ruiz", L"Bo Dahl", L"Cy Noir"});
    cuidRule rule = PairRule("H1", "H2");
    rule.profile = 0;
    Evaluate({rule});

    EXPECT_EQ(Message(), MessageText(1815, signerList.c_str()));
    EXPECT_EQ(Journalled(), MessageLine(1812) + MessageLine(1815, signerList.c_str()));
}

TEST_F(RuleHolders, ThreeDistributedSignersAreNotTooMany)
{
    veu = true;
    SignedBy({L"Ana Ruiz", L"Bo Dahl", L"Cy Noir"});
    Evaluate({PairRule("H1", "H2")});

    EXPECT_EQ(Only().status, rules::kStatusSuccess);
    EXPECT_EQ(Message(), L"");
    EXPECT_FALSE(trace.Has("warning|too much signers !!!"));
}

TEST_F(RuleHolders, SecondSignerOfAnAloneRuleIsNotItsConcern)
{
    SignedBy({L"Ana Ruiz", L"Bo Dahl"});
    Evaluate({AloneRule("H1")});

    EXPECT_EQ(decisions.GetCount(), 0);
    EXPECT_EQ(Journalled(), MessageLine(1817));
    EXPECT_TRUE(trace.Has("#RULE7 FAILED|sign alone error"));
}

TEST_F(RuleHolders, ThreeSignersOfAnAloneRuleAreWarnedOfFirst)
{
    SignedBy({L"Ana Ruiz", L"Bo Dahl", L"Cy Noir"});
    Evaluate({AloneRule("H1")});

    EXPECT_EQ(decisions.GetCount(), 0);
    EXPECT_EQ(Journalled(), MessageLine(1812) + MessageLine(1817));
}

TEST_F(RuleHolders, AloneRuleOfADistributedOrderAcceptsMoreSigners)
{
    veu = true;
    SignedBy({L"Ana Ruiz", L"Bo Dahl"});
    cuidRule rule = AloneRule("H1");
    rule.profile = 1;
    Evaluate({rule});

    EXPECT_EQ(Only().status, rules::kStatusSuccess);
}

TEST_F(RuleHolders, MissingFirstHolderLeavesNoRecord)
{
    SignedBy({L"Bo Dahl", L"Nobody"});
    Evaluate({PairRule("H1", "H2")});

    EXPECT_EQ(decisions.GetCount(), 0);
    EXPECT_EQ(Journalled(), MessageLine(1809, L"Bo Dahl;Nobody"));
    EXPECT_TRUE(trace.Has("#RULE6 FAILED|R\xC3\xA8gle manquantes"));
}

TEST_F(RuleHolders, MissingSecondHolderLeavesNoRecord)
{
    SignedBy({L"Ana Ruiz", L"Nobody"});
    Evaluate({PairRule("H1", "H2")});

    EXPECT_EQ(decisions.GetCount(), 0);
    EXPECT_EQ(Journalled(), MessageLine(1809, L"Ana Ruiz;Nobody"));
}

TEST_F(RuleHolders, MissingHolderOfADistributedOrderMayStillCome)
{
    veu = true;
    SignedBy({L"Ana Ruiz", L"Nobody"});
    Evaluate({PairRule("H1", "H2")});

    EXPECT_EQ(Only().status, rules::kStatusSuccess);
    EXPECT_EQ(Reason(),
              MessageText(1803, L"Ruiz", L"Ana", L"Ana Ruiz", 100.0, kNone, 1000.0, kNone));
}

// A look-up that fails counts as a holder that did not sign.
TEST_F(RuleHolders, QuoteInACertificateNameMakesEveryRuleUnmatched)
{
    SignedBy({L"Ana Ruiz", L"Pat O'Brien"});
    Evaluate({PairRule("H1", "H2")});

    EXPECT_EQ(decisions.GetCount(), 0);
    EXPECT_TRUE(trace.Has("Warning|#Signer not found"));
    EXPECT_EQ(Journalled(), L"");
}

} // namespace
