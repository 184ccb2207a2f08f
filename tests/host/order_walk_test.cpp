// Work files read side by side, also such as another conversion engine might leave.

#include "host/file_amounts.h"
#include "host/order_walk.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace host
{
namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// What the visitor was shown, a text a call.
class Recorder final : public OrderVisitor
{
public:
    void BeginRemittance() override { m_calls.emplace_back("remittance"); }
    void Currency(const amounts::DelimitedRow& row, const RowTotals& totals) override
    {
        m_calls.push_back("currency " + std::string(row.GetAt(0)) + " " + totals.total +
                          totals.currency + " of " + totals.orders);
    }
    void BeginOrders() override { m_calls.emplace_back("orders"); }
    void Order(const amounts::DelimitedRow& row, std::uint64_t number) override
    {
        m_calls.push_back(std::to_string(number) + ": " + std::string(row.GetAt(0)));
    }
    void EndRemittance() override { m_calls.emplace_back("end"); }

    std::vector<std::string> m_calls;
};

class WorkFilesSideBySide : public testing::Test
{
protected:
    using Rows = std::vector<std::string>;

    void Write(const std::string& ending, const Rows& rows) const
    {
        std::string bytes = "RECORD;CORPS\r\n16;16\r\n\"RECORD\";\"CORPS\"\r\n----\r\n";
        for (const std::string& row : rows)
        {
            bytes += row + "\r\n";
        }
        m_folder.Write("order" + ending, bytes);
    }

    static std::string Counts(const std::string& record, const std::string& total,
                              const std::string& currency, const std::string& orders)
    {
        return "\"" + record + "\";\"1\";\"" + total + "\";\"" + currency + "\";\"" + orders + "\"";
    }

    static std::string Order(const std::string& record, const std::string& amount = "1.00")
    {
        return "\"" + record + "\";\"1\";\"\";\"\";\"" + amount + "\";\"EUR\"";
    }

    std::string OrderPath() const { return m_folder.Path("order"); }

    std::vector<std::string> Shown() const
    {
        Recorder recorder;
        OrderWalk walk(OrderPath());
        walk.Show(recorder);
        return recorder.m_calls;
    }

    testing_support::TemporaryFolder m_folder;
};

TEST_F(WorkFilesSideBySide, CountsTellWhichOrdersBelongToARemittance)
{
    Write(".veu.cp2", {"\"1\";\"1\"", "\"1\";\"1\"", "\"2\";\"1\""});
    Write(".veu.tot", {Counts("1", "2.00", "EUR", "2"), Counts("1", "3", "JPY", "1"),
                       Counts("2", "4.00", "EUR", "1"), Counts("*", "6.00", "EUR", "3"),
                       Counts("*", "3", "JPY", "1")});
    Write(".veu.cp", {Order("1.1"), Order("1.2"), Order("1.3"), Order("2.1")});

    EXPECT_THAT(Shown(),
                ElementsAre("remittance", "currency 1 2.00EUR of 2", "currency 1 3JPY of 1",
                            "orders", "1: 1.1", "2: 1.2", "3: 1.3", "end", "remittance",
                            "currency 2 4.00EUR of 1", "orders", "4: 2.1", "end"));
}

TEST_F(WorkFilesSideBySide, OrdersThatNoRemittanceCountsAreShownAtTheEnd)
{
    Write(".veu.cp2", {"\"1\";\"1\""});
    Write(".veu.tot", {Counts("*", "2.00", "EUR", "2")});
    Write(".veu.cp", {Order("1.1"), Order("1.2")});

    EXPECT_THAT(Shown(), ElementsAre("remittance", "currency 1  of ", "orders", "end", "remittance",
                                     "orders", "1: 1.1", "2: 1.2", "end"));
}

TEST_F(WorkFilesSideBySide, CountAboveTheOrdersThatAreThereShowsThoseThatAre)
{
    Write(".veu.cp2", {"\"1\";\"1\""});
    Write(".veu.tot", {Counts("1", "9.00", "EUR", "9")});
    Write(".veu.cp", {Order("1.1")});

    EXPECT_THAT(Shown(),
                ElementsAre("remittance", "currency 1 9.00EUR of 9", "orders", "1: 1.1", "end"));
}

TEST_F(WorkFilesSideBySide, FilesWithoutARowShowNothing)
{
    Write(".veu.cp2", {});
    Write(".veu.tot", {});
    Write(".veu.cp", {});

    EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(WorkFilesSideBySide, AnAmountThatIsNoDecimalIsWhatTheLibraryMakesOfIt)
{
    Write(".veu.bp", {Counts("1", "1,234.50", "EUR", ""), Counts("2", "1.00", "EUR", "")});
    Write(".veu.tot", {});
    Write(".veu.cp", {Order("1.1", "1,234.50"), Order("2.1", "1.00")});
    Write(".veu.err", {});

    const FileAmounts figures = ReadFileAmounts(OrderPath());

    EXPECT_FALSE(figures.isExact);
    EXPECT_EQ(figures.total, "1235.50");
    EXPECT_EQ(figures.largest, "1234.50");
    EXPECT_EQ(figures.orders, 2U);
    ASSERT_FALSE(WarningsOf(figures).empty());
    EXPECT_THAT(WarningsOf(figures).front(), HasSubstr("no plain decimal"));
}

} // namespace
} // namespace host
