#pragma once

#include "host/order_walk.h"

#include <string>
#include <vector>

namespace host
{

/// Prints the order display for a terminal of 120 columns, an order a line. The end of its scope
/// ends the last line.
class DisplayText final : public OrderVisitor
{
public:
    /// Both column sets must outlive this. `fileShown` is UTF-8.
    DisplayText(const DisplayColumns& remittance, const DisplayColumns& order,
                const std::string& fileShown);
    ~DisplayText() override;

    void BeginRemittance() override;
    void Currency(const amounts::DelimitedRow& row, const RowTotals& totals) override;
    void BeginOrders() override;
    void Order(const amounts::DelimitedRow& row, std::uint64_t number) override;
    void EndRemittance() override {}

private:
    const DisplayColumns& m_remittance;
    const DisplayColumns& m_order;
    bool m_isFirstCurrency = true;
};

} // namespace host
