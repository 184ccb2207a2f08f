#include "tests/rules/evaluation_fixture.h"

#include "support/codepage.h"

#include <cmath>
#include <limits>

namespace
{

using testing_support::AloneRule;
using testing_support::kNone;
using testing_support::MessageLine;
using testing_support::MessageText;
using testing_support::PairRule;

// Amounts, by one holder and a limit of 1000.00.

struct LimitCase
{
    const char* name;
    int tlevel;
    double total;
    double largest;
    std::int32_t status;
};

class AmountOfAnOrder : public testing_support::EvaluationTest,
                        public testing::WithParamInterface<LimitCase>
{
};

TEST_P(AmountOfAnOrder, IsComparedWithTheLimit)
{
    total = GetParam().total;
    largest = GetParam().largest;
    SignedBy({L"Ana Ruiz"});
    cuidRule rule = AloneRule("H1");
    rule.tlevel = GetParam().tlevel;
    Evaluate({rule});

    EXPECT_EQ(Only().status, GetParam().status);
    EXPECT_EQ(Only().controlType, GetParam().tlevel);
    EXPECT_EQ(Code(), GetParam().status == 2 ? "AM02" : "");
}

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

constexpr LimitCase kLimits[] = {
    {"EqualToTheLimitPasses", 0, 1000.00, 1000.00, 1},
    {"OneCentAboveIsRefused", 0, 1000.01, 1.00, 2},
    {"OneMillionthAboveIsRefused", 0, 1000.000001, 1.00, 2},
    {"LargestOrderOneMillionthAboveIsRefused", 1, 1000.00, 1000.000001, 2},
    {"OneUnitOfTheTablesAboveIsRefused", 0, 1000.0000001, 1.00, 2},
    {"LargestOrderIsNotCompared", 0, 1000.00, 1000.01, 1},
    {"LargestOrderEqualToTheLimitPasses", 1, 5000.00, 1000.00, 1},
    {"LargestOrderOneCentAboveIsRefused", 1, 1000.01, 1000.01, 2},
    {"TotalIsNotComparedWithTheLargestOrdersLimit", 1, 9999.99, 1.00, 1},
    {"UnknownLevelNeverRefuses", 2, 9999.99, 9999.99, 1},
    {"NegativeLevelNeverRefuses", -1, 9999.99, 9999.99, 1},
    {"NoAmountPasses", 0, 0.0, 0.0, 1},
    {"NegativeAmountPasses", 0, -1.0, -1.0, 1},
    {"NumberThatIsNonePasses", 0, kNaN, kNaN, 1},
};

INSTANTIATE_TEST_SUITE_P(Limits, AmountOfAnOrder, testing::ValuesIn(kLimits),
                         [](const auto& row) { return row.param.name; });

// What is told of a refused amount.

class AmountRefusal : public testing_support::EvaluationTest
{
protected:
    AmountRefusal()
    {
        total = 7000.0;
        largest = 2000.0;
    }

    void EvaluateLevel(cuidRule rule, int tlevel)
    {
        rule.tlevel = tlevel;
        Evaluate({rule});
        EXPECT_EQ(Only().status, rules::kStatusFailed);
        EXPECT_EQ(Journalled(), Reason() + L"\r\n");
        EXPECT_EQ(Message(), L"");
        const std::string label = tlevel == 0 ? "#RULE2 FAILED" : "#RULE3 FAILED";
        EXPECT_TRUE(trace.Has(label + "|" + support::Utf8FromWide(Reason())));
    }
};

TEST_F(AmountRefusal, TotalOfOneHolder)
{
    SignedBy({L"Ana Ruiz"});
    EvaluateLevel(AloneRule("H1"), 0);

    EXPECT_EQ(Reason(),
              MessageText(1801, L"Ruiz", L"Ana", L"Ana Ruiz", 7000.0, kNone, 1000.0, kNone));
}

// Compares the largest order but shows the file's total, on purpose: the text is about the file.
TEST_F(AmountRefusal, LargestOrderOfOneHolderShowsTheTotal)
{
    SignedBy({L"Ana Ruiz"});
    EvaluateLevel(AloneRule("H1"), 1);

    EXPECT_EQ(Reason(),
              MessageText(1802, L"Ruiz", L"Ana", L"Ana Ruiz", 7000.0, kNone, 1000.0, kNone));
}

TEST_F(AmountRefusal, TotalOfTwoHolders)
{
    SignedBy({L"Ana Ruiz", L"Bo Dahl"});
    EvaluateLevel(PairRule("H1", "H2"), 0);

    EXPECT_EQ(Reason(), MessageText(1820, L"Ruiz", L"Ana", L"Ana Ruiz", L"Dahl", L"Bo", L"Bo Dahl",
                                    7000.0, kNone, 1000.0, kNone));
}

TEST_F(AmountRefusal, LargestOrderOfTwoHoldersShowsTheTotal)
{
    SignedBy({L"Ana Ruiz", L"Bo Dahl"});
    EvaluateLevel(PairRule("H1", "H2"), 1);

    EXPECT_EQ(Reason(), MessageText(1821, L"Ruiz", L"Ana", L"Ana Ruiz", L"Dahl", L"Bo", L"Bo Dahl",
                                    7000.0, kNone, 1000.0, kNone));
}

TEST_F(AmountRefusal, TotalOfTheSecondHolderByHimself)
{
    veu = true;
    SignedBy({L"Bo Dahl"});
    EvaluateLevel(PairRule("H1", "H2"), 0);

    EXPECT_EQ(Reason(),
              MessageText(1801, L"Dahl", L"Bo", L"Bo Dahl", 7000.0, kNone, 1000.0, kNone));
}

TEST_F(AmountRefusal, LargestOrderOfTheSecondHolderByHimself)
{
    veu = true;
    SignedBy({L"Bo Dahl"});
    EvaluateLevel(PairRule("H1", "H2"), 1);

    EXPECT_EQ(Reason(),
              MessageText(1802, L"Dahl", L"Bo", L"Bo Dahl", 7000.0, kNone, 1000.0, kNone));
}

// Profiles.

struct ProfileCase
{
    const char* name;
    int profile;
    int signers;
    bool veu;
    const char* finding;
    unsigned int message;
};

class ProfileTest : public testing_support::EvaluationTest,
                    public testing::WithParamInterface<ProfileCase>
{
protected:
    void EvaluateProfile()
    {
        veu = GetParam().veu;
        SignedBy({L"Ana Ruiz"});
        if (GetParam().signers > 1)
        {
            SignedBy({L"Bo Dahl"});
        }
        cuidRule rule = PairRule("H1", "H2");
        rule.profile = GetParam().profile;
        Evaluate({rule});
        EXPECT_EQ(trace.Count("CHECK PROFIL RULE-|---------------------------"), 1);
    }
};

class RefusedProfile : public ProfileTest
{
};

TEST_P(RefusedProfile, IsToldWithTheSignerList)
{
    EvaluateProfile();

    EXPECT_EQ(Only().status, rules::kStatusFailed);
    EXPECT_EQ(Code(), "NARR");
    EXPECT_EQ(Reason(), MessageText(1816));
    EXPECT_EQ(Message(), MessageText(GetParam().message, signerList.c_str()));
    EXPECT_EQ(Journalled(), MessageLine(GetParam().message, signerList.c_str()))
        << "the reason text itself is never journalled";
    EXPECT_TRUE(trace.Has(std::string("#RULE5 FAILED|") + GetParam().finding));
    EXPECT_EQ(trace.Count("CHECK AMOUNT RULE-|---------------------------"), 0);
}

constexpr ProfileCase kRefused[] = {
    {"SingleByTwo", 0, 2, false, "PROFIL MISMATCH", 1815},
    {"SingleByTwoDistributed", 0, 2, true, "PROFIL MISMATCH", 1815},
    {"DoubleByOne", 1, 1, false,
     "DOUBLE SIGNATURE EXIG\xC3\x89"
     "E",
     1808},
};

INSTANTIATE_TEST_SUITE_P(Profiles, RefusedProfile, testing::ValuesIn(kRefused),
                         [](const auto& row) { return row.param.name; });

class PassedProfile : public ProfileTest
{
};

TEST_P(PassedProfile, SucceedsWithinTheLimit)
{
    EvaluateProfile();

    EXPECT_EQ(Only().status, rules::kStatusSuccess);
    EXPECT_FALSE(trace.Has("#RULE5 FAILED|PROFIL MISMATCH"));
}

TEST_P(PassedProfile, LeavesTheAmountToDecide)
{
    total = 1000.01;
    EvaluateProfile();

    EXPECT_EQ(Only().status, rules::kStatusFailed);
    EXPECT_EQ(Code(), "AM02");
}

constexpr ProfileCase kPassed[] = {
    {"SingleByOne", 0, 1, false, nullptr, 0}, {"DoubleByOneDistributed", 1, 1, true, nullptr, 0},
    {"DoubleByTwo", 1, 2, false, nullptr, 0}, {"DoubleByTwoDistributed", 1, 2, true, nullptr, 0},
    {"OtherByTwo", 2, 2, false, nullptr, 0},  {"OtherByOne", 2, 1, false, nullptr, 0},
};

INSTANTIATE_TEST_SUITE_P(Profiles, PassedProfile, testing::ValuesIn(kPassed),
                         [](const auto& row) { return row.param.name; });

TEST_F(AmountRefusal, ProfileIsCheckedBeforeTheAmount)
{
    SignedBy({L"Ana Ruiz", L"Bo Dahl"});
    cuidRule rule = PairRule("H1", "H2");
    rule.profile = 0;
    Evaluate({rule});

    EXPECT_EQ(Code(), "NARR");
}

} // namespace
