#include "host/order_walk.h"

#include <charconv>
#include <limits>

namespace host
{

namespace
{

constexpr std::uint64_t kAllOrders = std::numeric_limits<std::uint64_t>::max();

// Details and counts have a row each for every remittance and currency, in the same order.
struct Walker
{
    OrderVisitor& visitor;
    RowCursor details;
    RowCursor counts;
    RowCursor orders;
    std::uint64_t number = 0;

    void ShowRemittance();
    void ShowOrders(std::uint64_t count);
    RowTotals TakeTotals();
};

std::uint64_t CountFrom(const std::string& text)
{
    std::uint64_t count = 0;
    std::from_chars(text.data(), text.data() + text.size(), count);
    return count;
}

// What the counts do not tell is taken for nothing; the orders come at the end then.
RowTotals Walker::TakeTotals()
{
    RowTotals totals;
    if (counts.HasRow() && counts.Row().GetAt(amounts::kRecord) != amounts::kWholeFileRecord)
    {
        totals.total = counts.Row().GetAt(amounts::kRemittanceTotal);
        totals.currency = counts.Row().GetAt(amounts::kRemittanceCurrency);
        totals.orders = counts.Row().GetAt(amounts::kRemittanceOrders);
        counts.Pass();
    }
    return totals;
}

void Walker::ShowRemittance()
{
    const std::string record(details.Row().GetAt(amounts::kRecord));
    std::uint64_t count = 0;
    visitor.BeginRemittance();
    while (details.HasRow() && details.Row().GetAt(amounts::kRecord) == record)
    {
        const RowTotals totals = TakeTotals();
        count += CountFrom(totals.orders);
        visitor.Currency(details.Row(), totals);
        details.Pass();
    }
    ShowOrders(count);
    visitor.EndRemittance();
}

void Walker::ShowOrders(std::uint64_t count)
{
    visitor.BeginOrders();
    for (; count > 0 && orders.HasRow(); --count)
    {
        visitor.Order(orders.Row(), ++number);
        orders.Pass();
    }
}

} // namespace

OrderWalk::OrderWalk(const std::string& order)
    : m_details(amounts::WorkFilePath(order.c_str(), amounts::kDetailsFile).c_str(),
                amounts::OneLineHeader(amounts::kDetailsFile)),
      m_counts(amounts::WorkFilePath(order.c_str(), amounts::kCountsFile).c_str(),
               amounts::OneLineHeader(amounts::kCountsFile)),
      m_orders(amounts::WorkFilePath(order.c_str(), amounts::kOrdersFile).c_str(),
               amounts::OneLineHeader(amounts::kOrdersFile))
{
}

void OrderWalk::Show(OrderVisitor& visitor)
{
    Walker walker{visitor, RowCursor(m_details), RowCursor(m_counts), RowCursor(m_orders)};
    while (walker.details.HasRow())
    {
        walker.ShowRemittance();
    }
    if (walker.orders.HasRow())
    {
        visitor.BeginRemittance();
        walker.ShowOrders(kAllOrders);
        visitor.EndRemittance();
    }
}

} // namespace host
