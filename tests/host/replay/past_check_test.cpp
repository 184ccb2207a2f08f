// History rows put together to the checks that wrote them.

#include "host/replay/past_check.h"

#include <gtest/gtest.h>

namespace testing_support
{
namespace
{

using host::QueryRow;
using replay::CheckGrouper;
using replay::PastCheck;

/// A row of an order; what a test is about it changes.
QueryRow RowOf(int number, const std::string& finding = "limit 1", const std::string& order = "A1")
{
    return {{"ROWNO", std::to_string(number)},
            {"DATETIME", "2026-03-29 10:00:00"},
            {"SERVER", "1"},
            {"STATUT", "1"},
            {"VPNAME", "DUPONTSA"},
            {"TYPE_PTC", "9"},
            {"VFNAME", "CCT"},
            {"VCNAME", "TRESOR"},
            {"ORDERID", order},
            {"IDFICVFS", "0"},
            {"TYPE_CTRL", "0"},
            {"SIGNER1", "Ana Ruiz"},
            {"SIGNER2", " "},
            {"MOTIF", finding},
            {"CNS", "Ana Ruiz"},
            {"TOTAL", "900.5"},
            {"MAXORDER", "400"},
            {"FILENAME", "order.xml"}};
}

QueryRow With(QueryRow row, const std::string& column, const std::string& value)
{
    row[column] = value;
    return row;
}

/// Rows are given oldest first, as they were written.
std::vector<PastCheck> Group(const std::vector<QueryRow>& rows)
{
    CheckGrouper grouper;
    std::vector<PastCheck> checks;
    const auto add = [&checks](std::optional<PastCheck> check)
    {
        if (check)
        {
            checks.push_back(std::move(*check));
        }
    };
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
    {
        add(grouper.Take(*row));
    }
    add(grouper.Finish());
    return checks;
}

TEST(PastChecks, AreReadWithAllThatAnOrderHas)
{
    const auto checks = Group({RowOf(7)});

    ASSERT_EQ(checks.size(), 1U);
    const PastCheck& check = checks[0];
    EXPECT_EQ(check.oldestRow, 7);
    EXPECT_EQ(check.newestRow, 7);
    EXPECT_EQ(check.rows, 1U);
    EXPECT_EQ(check.key, (rulebook::ContractKey{"DUPONTSA", "CCT", "TRESOR", 9, 1}));
    EXPECT_EQ(check.orderId, "A1");
    EXPECT_EQ(check.file, "order.xml");
    EXPECT_EQ(check.signers, "Ana Ruiz");
    EXPECT_EQ(check.total, 900.5);
    EXPECT_EQ(check.largest, 400.0);
    EXPECT_EQ(check.verdict, 1U);
    EXPECT_EQ(check.obstacle, "");
    EXPECT_FALSE(check.mayBeSeveral);
    EXPECT_FALSE(check.mayBePart);
}

TEST(PastChecks, TakeEqualNeighboursTogether)
{
    const auto checks = Group({RowOf(1, "limit 1"), RowOf(2, "limit 2"), RowOf(3, "limit 3")});

    ASSERT_EQ(checks.size(), 1U);
    EXPECT_EQ(checks[0].oldestRow, 1);
    EXPECT_EQ(checks[0].newestRow, 3);
    EXPECT_EQ(checks[0].rows, 3U);
    EXPECT_FALSE(checks[0].mayBeSeveral);
}

// Nodes of a cluster number in steps, and a failed insert leaves a gap.
TEST(PastChecks, AreNotPartedByNumbersThatAreMissing)
{
    const auto checks = Group({RowOf(1, "limit 1"), RowOf(4, "limit 2")});

    ASSERT_EQ(checks.size(), 1U);
    EXPECT_EQ(checks[0].rows, 2U);
}

TEST(PastChecks, ArePartedByWhateverIsOtherThanTheFinding)
{
    const std::pair<const char*, const char*> others[] = {
        {"SERVER", "0"},       {"STATUT", "2"},     {"VPNAME", "MUELLER"}, {"TYPE_PTC", "8"},
        {"VFNAME", "CCU"},     {"VCNAME", "KASSE"}, {"ORDERID", "A2"},     {"IDFICVFS", "5"},
        {"CNS", "Ana Ruiz;B"}, {"TOTAL", "900.51"}, {"MAXORDER", "401"},   {"FILENAME", "b.xml"},
    };
    for (const auto& [column, value] : others)
    {
        SCOPED_TRACE(column);
        const auto checks = Group({RowOf(1), With(RowOf(2), column, value)});

        EXPECT_EQ(checks.size(), 2U);
    }
}

TEST(PastChecks, MayBeSeveralWhereAFindingRepeats)
{
    const auto checks = Group({RowOf(1), RowOf(2)});

    ASSERT_EQ(checks.size(), 1U);
    EXPECT_TRUE(checks[0].mayBeSeveral);
}

TEST(PastChecks, MayBeSeveralWhereTheirRowsLieApartInTime)
{
    const auto near = Group({With(RowOf(1, "limit 1"), "DATETIME", "2026-03-28 23:59:58.5"),
                             With(RowOf(2, "limit 2"), "DATETIME", "2026-03-29 00:00:02")});
    const auto apart = Group({With(RowOf(1, "limit 1"), "DATETIME", "2026-03-28 23:59:58"),
                              With(RowOf(2, "limit 2"), "DATETIME", "2026-03-29 00:00:04")});

    ASSERT_EQ(near.size(), 1U);
    EXPECT_FALSE(near[0].mayBeSeveral);
    ASSERT_EQ(apart.size(), 1U);
    EXPECT_TRUE(apart[0].mayBeSeveral);
    EXPECT_EQ(apart[0].time, "2026-03-28 23:59:58");
}

TEST(PastChecks, MayBePartsWhereAnotherHostWroteBetween)
{
    const auto checks =
        Group({RowOf(1, "limit 1"), RowOf(2, "limit 1", "B7"), RowOf(3, "limit 2")});

    ASSERT_EQ(checks.size(), 3U);
    EXPECT_FALSE(checks[0].mayBePart);
    EXPECT_FALSE(checks[1].mayBePart);
    EXPECT_TRUE(checks[2].mayBePart);
}

TEST(PastChecks, AreNoPartsOfOneLongBefore)
{
    const auto checks = Group(
        {With(RowOf(1), "DATETIME", "2026-03-28 10:00:00"), RowOf(2, "limit 1", "B7"), RowOf(3)});

    ASSERT_EQ(checks.size(), 3U);
    EXPECT_FALSE(checks[2].mayBePart);
}

TEST(PastChecks, AreNoPartsOfOneFarAway)
{
    std::vector<QueryRow> rows = {RowOf(1)};
    for (int number = 2; number < 80; ++number)
    {
        rows.push_back(RowOf(number, "limit 1", "B" + std::to_string(number)));
    }
    rows.push_back(RowOf(80));

    const auto checks = Group(rows);

    ASSERT_EQ(checks.size(), 80U);
    EXPECT_FALSE(checks.back().mayBePart);
}

TEST(PastChecks, TellWhyTheyCannotBeJudgedAgain)
{
    EXPECT_EQ(Group({With(RowOf(1), "TOTAL", "")})[0].obstacle, "column TOTAL is NULL");
    EXPECT_EQ(Group({With(RowOf(1), "STATUT", "7")})[0].obstacle, "column STATUT holds no verdict");
    EXPECT_EQ(Group({With(RowOf(1), "MAXORDER", "Infinity")})[0].obstacle,
              "an amount is no finite number");
    EXPECT_EQ(Group({With(RowOf(1), "MAXORDER", "1e+18")})[0].obstacle, "");
    EXPECT_EQ(Group({With(RowOf(1), "CNS", std::string(2047, 'x'))})[0].obstacle, "");
    EXPECT_EQ(Group({With(RowOf(1), "CNS", std::string(2048, 'x'))})[0].obstacle,
              "the list of signers fills its column and may have been cut");
}

} // namespace
} // namespace testing_support
