#include "tests/signers/directory_fixture.h"
#include "tests/signers/failing_rows.h"

namespace
{

using testing_support::Holder;

class SignerInfos : public testing_support::HolderDirectoryTest
{
};

TEST_F(SignerInfos, HolderAmongTheSignersCompletesTheEntry)
{
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Ana Ruiz"));
    List({L"Bo Dahl", L"Ana Ruiz"});

    EXPECT_EQ(Infos("H1"), 1);
    EXPECT_EQ(notOpposition, 1);
    EXPECT_EQ(std::wstring(certificate), L"Ana Ruiz");
    EXPECT_EQ(std::wstring(firstName), L"Ana");
    EXPECT_EQ(std::wstring(lastName), L"Ruiz");
    EXPECT_EQ(FirstNameOf(0), L"");
    EXPECT_EQ(LastNameOf(0), L"");
    EXPECT_EQ(FirstNameOf(1), L"Ana");
    EXPECT_EQ(LastNameOf(1), L"Ruiz");
    EXPECT_STREQ(list.GetAt(1)->certificate.SafeGetString(), L"Ana Ruiz");
}

TEST_F(SignerInfos, EmptyListGivesZeroWithoutTouchingDatabaseOrBuffers)
{
    tables.Execute(L"DROP TABLE SSR_HOLDERID");

    EXPECT_EQ(Infos("H1"), 0);
    ExpectBuffersUntouched();
    EXPECT_EQ(trace.Lines(), "");
    EXPECT_TRUE(problem.IsEmpty());
}

TEST_F(SignerInfos, NullListGivesZero)
{
    EXPECT_EQ(signers::GetSignerInfos(directory, "H1", notOpposition, certificate, firstName,
                                      lastName, nullptr),
              0);
    ExpectBuffersUntouched();
    EXPECT_EQ(trace.Lines(), "");
}

TEST_F(SignerInfos, WithoutConnectionTheAnswerIsZeroAndNothingIsTraced)
{
    List({L"Ana Ruiz"});
    directory.database = nullptr;

    EXPECT_EQ(Infos("H1"), 0);
    ExpectBuffersUntouched();
    EXPECT_EQ(trace.Lines(), "");
}

TEST_F(SignerInfos, HolderThatDidNotSignGivesZeroAndLeavesTheBuffersUntouched)
{
    bank.With(Holder(L"H1").Certificate(L"Ana Ruiz"));
    List({L"Bo Dahl"});

    EXPECT_EQ(Infos("H1"), 0);
    ExpectBuffersUntouched();
}

TEST_F(SignerInfos, AnotherHoldersCertificateDoesNotCount)
{
    bank.With(Holder(L"H1").Certificate(L"Ana Ruiz")).With(Holder(L"H2").Certificate(L"Bo Dahl"));
    List({L"Ana Ruiz"});

    EXPECT_EQ(Infos("H2"), 0);
    EXPECT_EQ(FirstNameOf(0), L"");
}

TEST_F(SignerInfos, MixedCaseMatchesInTheStatementAndInMemory)
{
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"ana ruiz"));
    List({L"ANA Ruiz"});

    EXPECT_EQ(Infos("H1"), 1);
    EXPECT_EQ(std::wstring(certificate), L"ana ruiz");
    EXPECT_EQ(FirstNameOf(0), L"Ana");
}

TEST_F(SignerInfos, HolderIdentifiersRespectCase)
{
    bank.With(Holder(L"H1").Certificate(L"Ana Ruiz"));
    List({L"Ana Ruiz"});

    EXPECT_EQ(Infos("h1"), 0);
}

TEST_F(SignerInfos, CertificateThatStandsTwiceIsCompletedTwiceByOneRow)
{
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Ana Ruiz"));
    List({L"Ana Ruiz", L"Bo Dahl", L"ana ruiz"});

    EXPECT_EQ(Infos("H1"), 1);
    EXPECT_EQ(FirstNameOf(0), L"Ana");
    EXPECT_EQ(FirstNameOf(1), L"");
    EXPECT_EQ(FirstNameOf(2), L"Ana");
    EXPECT_EQ(trace.Count("SIGNER INFO-------|---------------------------"), 1);
    EXPECT_FALSE(trace.Has("warning|signer already found"));
}

TEST_F(SignerInfos, CertificateTakenByTheFirstHolderDoesNotServeTheSecond)
{
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Shared"))
        .With(Holder(L"H2").Named(L"Bo", L"Dahl").Certificate(L"Shared").Blocked());
    List({L"Shared"});

    EXPECT_EQ(Infos("H1"), 1);
    EXPECT_EQ(Infos("H2"), 0);
    EXPECT_EQ(FirstNameOf(0), L"Ana") << "the first holder keeps it";
    EXPECT_EQ(std::wstring(firstName), L"Bo") << "the buffers hold the last row read";
    EXPECT_EQ(std::wstring(lastName), L"Dahl");
    EXPECT_EQ(std::wstring(certificate), L"Shared");
    EXPECT_EQ(notOpposition, 0);
    EXPECT_EQ(trace.Count("warning|signer already found"), 1);
}

TEST_F(SignerInfos, SecondCertificateOfTheHolderIsTriedWhenTheFirstIsTaken)
{
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Shared"))
        .With(Holder(L"H2").Named(L"Bo", L"Dahl").Certificate(L"Shared").Certificate(L"Own"));
    List({L"Shared", L"Own"});

    EXPECT_EQ(Infos("H1"), 1);
    EXPECT_EQ(Infos("H2"), 1);
    EXPECT_EQ(std::wstring(certificate), L"Own");
    EXPECT_EQ(FirstNameOf(0), L"Ana");
    EXPECT_EQ(FirstNameOf(1), L"Bo");
}

TEST_F(SignerInfos, ScanStopsAfterTheFirstRowThatCompletesAnEntry)
{
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"One").Certificate(L"Two"));
    List({L"One", L"Two"});

    EXPECT_EQ(Infos("H1"), 1);
    EXPECT_EQ(FirstNameOf(0).empty() + FirstNameOf(1).empty(), 1);
    EXPECT_EQ(trace.Count("SIGNER INFO-------|---------------------------"), 1);
}

// Only a first name marks an entry as taken, so a holder without one leaves its certificate free.
TEST_F(SignerInfos, HolderWithoutFirstNameLeavesTheCertificateFree)
{
    bank.With(Holder(L"H1").Named(L"", L"Ruiz").Certificate(L"Shared"))
        .With(Holder(L"H2").Named(L"Bo", L"Dahl").Certificate(L"Shared"));
    List({L"Shared"});

    EXPECT_EQ(Infos("H1"), 1);
    EXPECT_EQ(LastNameOf(0), L"Ruiz");
    EXPECT_EQ(Infos("H2"), 1);
    EXPECT_EQ(FirstNameOf(0), L"Bo");
}

struct OppositionCase
{
    const char* name;
    const wchar_t* column;
    int notOpposition;
};

class OppositionOfAHolder : public SignerInfos, public testing::WithParamInterface<OppositionCase>
{
};

TEST_P(OppositionOfAHolder, IsReadAsALeadingNumber)
{
    bank.With(Holder(L"H1").Opposition(GetParam().column).Certificate(L"Ana Ruiz"));
    List({L"Ana Ruiz"});

    EXPECT_EQ(Infos("H1"), 1);
    EXPECT_EQ(notOpposition, GetParam().notOpposition);
}

constexpr OppositionCase kOppositions[] = {
    {"OneBlocks", L"1", 0},
    {"ZeroFrees", L"0", 1},
    {"EmptyFrees", L"", 1},
    {"TextFrees", L"yes", 1},
    {"TwoBlocks", L"2", 0},
    {"LeadingDigitsCount", L"7days", 0},
    {"NumberBeyond32BitsBlocks", L"4294967296", 0},
};

INSTANTIATE_TEST_SUITE_P(Values, OppositionOfAHolder, testing::ValuesIn(kOppositions),
                         [](const auto& row) { return row.param.name; });

TEST_F(SignerInfos, TraceShowsTheRowThatTheAnswerRestsOn)
{
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Ana Ru\u00EDz", L"4711"));
    List({L"Ana Ru\u00EDz"});

    EXPECT_EQ(Infos("H1"), 1);
    EXPECT_EQ(trace.Lines(), "SIGNER INFO-------|---------------------------\n"
                             "HUID Signer       |H1\n"
                             "HUID FirstName    |Ana\n"
                             "HUID LastName     |Ruiz\n"
                             "HUID Certificate  |Ana Ru\xC3\xADz\n"
                             "HUID Serial Number|4711\n"
                             "HUID Is Opposition|0\n");
}

TEST_F(SignerInfos, NamesLongerThan255CharactersAreCut)
{
    if (!testing_support::RunsOnSqlite())
    {
        GTEST_SKIP() << "needs a product that stores texts beyond their column's length";
    }
    bank.With(Holder(L"H1")
                  .Named(std::wstring(300, L'f'), std::wstring(256, L'l'))
                  .Certificate(L"Ana Ruiz"));
    List({L"Ana Ruiz"});

    EXPECT_EQ(Infos("H1"), 1);
    EXPECT_EQ(std::wstring(firstName), std::wstring(255, L'f'));
    EXPECT_EQ(std::wstring(lastName), std::wstring(255, L'l'));
    EXPECT_EQ(FirstNameOf(0), std::wstring(255, L'f'));
}

// The comparison looks at 255 characters, so what differs behind them still matches.
TEST_F(SignerInfos, CertificatesAreComparedOver255Characters)
{
    if (!testing_support::RunsOnSqlite())
    {
        GTEST_SKIP() << "needs a product that stores texts beyond their column's length";
    }
    const std::wstring same(255, L'c');
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(same + L"1"));
    List({(same + L"1").c_str(), (same + L"2").c_str()});

    EXPECT_EQ(Infos("H1"), 1);
    EXPECT_EQ(std::wstring(certificate), same);
    EXPECT_EQ(FirstNameOf(0), L"Ana");
    EXPECT_EQ(FirstNameOf(1), L"Ana");
}

TEST_F(SignerInfos, HundredsOfSignersAreLookedUpAtOnce)
{
    bank.With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Signer 299"));
    for (int i = 0; i < 300; ++i)
    {
        List({(L"Signer " + std::to_wstring(i)).c_str()});
    }

    EXPECT_EQ(Infos("H1"), 1);
    EXPECT_EQ(FirstNameOf(299), L"Ana");
    EXPECT_EQ(FirstNameOf(298), L"");
}

} // namespace
