#pragma once

#include "host/json_stream.h"
#include "host/order_walk.h"

#include <string>
#include <vector>

namespace host
{

/// Writes the order display into a JSON object: what the profile file calls amount, account and so
/// on under names of their own, and what the text would show as lists of values.
class DisplayJson final : public OrderVisitor
{
public:
    /// Loads the sections that say which column means what, and opens the list of remittances. All
    /// must outlive this.
    DisplayJson(JsonStream& json, OrderWalk& walk, const DisplayProfile& profile,
                const DisplayColumns& remittance, const DisplayColumns& order);

    void BeginRemittance() override;
    void Currency(const amounts::DelimitedRow& row, const RowTotals& totals) override;
    void BeginOrders() override;
    void Order(const amounts::DelimitedRow& row, std::uint64_t number) override;
    void EndRemittance() override;
    /// Ends the list of remittances.
    void End();

private:
    void WriteLabels(const char* key, const DisplayColumns& columns);
    void WriteShown(const DisplayColumns& columns, const amounts::DelimitedRow& row,
                    const RowTotals& totals);

    JsonStream& m_json;
    const TVeuFile& m_details;
    const TVeuFile& m_orders;
    const DisplayColumns& m_remittance;
    const DisplayColumns& m_order;
    bool m_isFirstCurrency = true;
};

} // namespace host
