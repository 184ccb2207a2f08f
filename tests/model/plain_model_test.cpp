// The model's own plain parts, on values worked out by hand.

#include "tests/model/plain_amounts.h"
#include "tests/model/plain_messages.h"
#include "tests/model/plain_texts.h"

#include <gtest/gtest.h>

namespace
{

using model::Text;

TEST(PlainModel, LimitIsReadFromADecimalTextInAnyDress)
{
    EXPECT_EQ(model::LimitOf(L"1.234,56"), 1234.56);
    EXPECT_EQ(model::LimitOf(L"12,345.67"), 12345.67);
    EXPECT_EQ(model::LimitOf(L"1 000"), 1000.0);
    EXPECT_EQ(model::LimitOf(L""), 0.0);
    EXPECT_EQ(model::LimitOf(std::nullopt), 0.0);
    EXPECT_EQ(model::LimitOf(L"-7.5"), -7.5);
}

TEST(PlainModel, SeventhDecimalOfALimitIsDropped)
{
    EXPECT_EQ(model::LimitOf(L"1000.0000009"), 1000.0);
    EXPECT_EQ(model::LimitOf(L"1000.000001"), 1000.000001);
}

TEST(PlainModel, LimitOfNineDecimalsGrowsByAHundred)
{
    EXPECT_EQ(model::LimitOf(L"0.123456789"), 12.345678);
}

TEST(PlainModel, SmallNegativeLimitLosesItsSignAmongItsZeros)
{
    EXPECT_EQ(model::LimitOf(L"-0.05"), 0.0);
    EXPECT_EQ(model::LimitOf(L"-0.5"), -0.5);
}

TEST(PlainModel, ApostropheEndsALiteralUnlessAnotherStandsBesideIt)
{
    EXPECT_EQ(model::LiteralValue(L"O''BRIEN"), Text(L"O'BRIEN"));
    EXPECT_EQ(model::LiteralValue(L"O'BRIEN"), std::nullopt);
    EXPECT_EQ(model::LiteralValue(L"'''"), std::nullopt);
    EXPECT_EQ(model::LiteralValue(L"''''"), Text(L"''"));
}

TEST(PlainModel, MessageLeavesOutWhatIsEmpty)
{
    EXPECT_EQ(model::Message(1800, {L"Ruiz", L"", L"ANA RUIZ", L"12.00", L""}),
              L"Holder in opposition: Ruiz/ANA RUIZ, total 12.00");
    EXPECT_EQ(model::Message(1805, {L""}), L"No rule is known for these signers");
}

TEST(PlainModel, AmountsInMessagesHaveTwoToSixPlaces)
{
    EXPECT_EQ(model::AmountInMessage(1000.0), L"1000.00");
    EXPECT_EQ(model::AmountInMessage(12.345), L"12.345");
    EXPECT_EQ(model::AmountInMessage(0.0000001), L"0.00");
}

} // namespace
