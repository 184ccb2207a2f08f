#include "tests/rules/check_fixture.h"

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::Contract;
using testing_support::Holder;
using testing_support::kNone;

class QuoteInAName : public testing_support::CheckTest
{
};

TEST_F(QuoteInAName, QuotesInHolderNamesReachTheRow)
{
    bank.With(Holder(L"H3").Named(L"Pat'", L"O'Brien").Certificate(L"Pat"))
        .With(Contract(L"C1").AloneBy(L"H3"));

    EXPECT_EQ(Check(L"Pat"), rules::kVerdictSuccess);
    EXPECT_THAT(Column(L"SIGNER1"), ElementsAre(L"Pat' O'Brien"));
    const std::wstring reason = testing_support::MessageText(1803, L"O'Brien", L"Pat'", L"Pat",
                                                             100.0, kNone, 1000.0, kNone);
    EXPECT_THAT(Column(L"MOTIF"), ElementsAre(Stored(reason + L" : ")));
    EXPECT_TRUE(trail.problem.IsEmpty());
}

// Narrow texts enter the row as they stand, so a quote in one loses it; the verdict stands.
TEST_F(QuoteInAName, QuoteInTheFileNameLosesTheRow)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    file = "o'rder.xml";

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictSuccess);
    EXPECT_EQ(trail.rowsWritten, 0U);
    EXPECT_EQ(RowCount(), 0U);
    EXPECT_EQ(journal.events.size(), 1U);
}

TEST_F(QuoteInAName, QuoteInTheOrderIdentifierLosesTheRow)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    orderId = "O'1";

    EXPECT_EQ(Check(L"Ana Ruiz"), rules::kVerdictSuccess);
    EXPECT_EQ(trail.rowsWritten, 0U);
    EXPECT_EQ(RowCount(), 0U);
    EXPECT_EQ(journal.events.size(), 1U);
}

class QuoteAtTheCut : public QuoteInAName
{
protected:
    /// Verdict and event stay, the row is lost and nothing else runs.
    void ExpectLostRow(std::uint32_t verdict)
    {
        EXPECT_EQ(Check(L"Third"), verdict);
        EXPECT_EQ(trail.rowsDue, 1U);
        EXPECT_EQ(trail.rowsWritten, 0U);
        EXPECT_EQ(RowCount(), 0U);
        EXPECT_EQ(journal.events.size(), 1U);
        EXPECT_THAT(trace.Lines(), HasSubstr("\n***Exception|SignRules"));
        EXPECT_EQ(tables.Query(L"SELECT HUID FROM SSR_HOLDER").size(), 3U) << "nothing else ran";
    }

    void ExpectKeptRow()
    {
        EXPECT_EQ(Check(L"Third"), rules::kVerdictSuccess);
        EXPECT_EQ(trail.rowsWritten, 1U);
        EXPECT_EQ(RowCount(), 1U);
    }

    void ThirdHolder(const std::wstring& first, const std::wstring& last)
    {
        bank.With(Holder(L"H3").Named(first, last).Certificate(L"Third"))
            .With(Contract(L"C1").AllHolders().WithoutRules());
    }
};

TEST_F(QuoteAtTheCut, FirstNameWhose255thCharacterIsInsideADoubledQuoteLosesTheRow)
{
    ThirdHolder(std::wstring(254, L'f') + L"'", L"Last");
    ExpectLostRow(rules::kVerdictSuccess);
}

TEST_F(QuoteAtTheCut, LastNameWhose255thCharacterIsInsideADoubledQuoteLosesTheRow)
{
    ThirdHolder(L"First", std::wstring(254, L'l') + L"'");
    ExpectLostRow(rules::kVerdictSuccess);
}

TEST_F(QuoteAtTheCut, DoubledQuoteThatEndsAtThe255thCharacterKeepsTheRow)
{
    ThirdHolder(std::wstring(253, L'f') + L"'", L"Last");
    ExpectKeptRow();
    EXPECT_THAT(Column(L"SIGNER1"), ElementsAre(std::wstring(253, L'f') + L"' Last"));
}

TEST_F(QuoteAtTheCut, NameOfQuotesIsCutBetweenTwoDoubledOnesAndOneHalf)
{
    // 128 quotes become 256 characters; the 255th is the first half of the last pair.
    ThirdHolder(std::wstring(128, L'\''), L"Last");
    ExpectLostRow(rules::kVerdictSuccess);
}

// What a name smuggles behind the half quote would be a second statement, which is refused.
TEST_F(QuoteAtTheCut, TextBehindTheHalfQuoteDoesNotRun)
{
    ThirdHolder(std::wstring(254, L'f') + L"'",
                L",NULL,NULL,NULL,0,0,NULL);DELETE FROM SSR_HOLDER--");
    ExpectLostRow(rules::kVerdictSuccess);
}

class QuoteInTheMotif : public QuoteAtTheCut
{
protected:
    static constexpr std::size_t kCut = 1024;

    static std::wstring Motif(const std::wstring& last, const std::wstring& first)
    {
        const std::wstring name(250, L'\u03B1');
        const std::wstring text = testing_support::MessageText(
            1822, name.c_str(), name.c_str(), name.c_str(), last.c_str(), first.c_str(), L"Third",
            100.0, kNone, 1000.0, kNone);
        return text + L" : ";
    }

    /// Two holders with long names, a quote at this index of the MOTIF text.
    void HoldersWithQuoteAt(std::size_t index)
    {
        std::wstring last(250, L'\u03B2');
        std::wstring first(250, L'\u03B3');
        const std::wstring motif = Motif(last, first);
        std::wstring& hit = motif.at(index) == last[0] ? last : first;
        ASSERT_EQ(motif.at(index), hit[0]) << "the cut lies between the names";
        hit[index - motif.find(hit[0])] = L'\'';
        ASSERT_EQ(Motif(last, first).find(L'\''), index);

        const std::wstring name(250, L'\u03B1');
        bank.With(Holder(L"H3").Named(name, name).Certificate(name))
            .With(Holder(L"H4").Named(first, last).Certificate(L"Third"))
            .With(Contract(L"C1").DoubleSignature().By(L"H3", L"H4"));
        signerInfo other;
        other.certificate = name.c_str();
        signers.Add(other);
    }
};

TEST_F(QuoteInTheMotif, As1024thCharacterLosesTheRow)
{
    HoldersWithQuoteAt(kCut - 1U);
    EXPECT_EQ(Check(L"Third"), rules::kVerdictSuccess);
    EXPECT_EQ(trail.rowsDue, 1U);
    EXPECT_EQ(trail.rowsWritten, 0U);
    EXPECT_EQ(RowCount(), 0U);
    EXPECT_EQ(journal.events.size(), 1U);
    EXPECT_THAT(trace.Lines(), HasSubstr("\n***Exception|SignRules"));
}

TEST_F(QuoteInTheMotif, As1023rdCharacterKeepsTheRow)
{
    HoldersWithQuoteAt(kCut - 2U);
    ExpectKeptRow();
    const std::wstring motif = Column(L"MOTIF").at(0);
    EXPECT_EQ(motif.size(), kCut - 1U) << "the pair is one character of the column";
    EXPECT_EQ(motif.back(), L'\'');
}

TEST_F(QuoteInTheMotif, BehindTheCutKeepsTheRow)
{
    HoldersWithQuoteAt(kCut);
    ExpectKeptRow();
    EXPECT_EQ(Column(L"MOTIF").at(0).find(L'\''), std::wstring::npos);
}

} // namespace
