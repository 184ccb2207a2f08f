#include "host/display_json.h"

#include "support/codepage.h"

namespace host
{

namespace
{

template <typename Record>
struct Field
{
    const char* name;
    int Record::*column;
};

template <typename Record>
struct Switch
{
    const char* name;
    bool Record::*value;
};

using amounts::OrderColumns;
using amounts::RemittanceColumns;

constexpr Switch<RemittanceColumns> kRemittanceSwitches[] = {
    {"isCredit", &RemittanceColumns::isCredit},
    {"isBankCodeBic", &RemittanceColumns::isBankCodeBic},
    {"isAccountIban", &RemittanceColumns::isAccountIban},
};

constexpr Field<RemittanceColumns> kRemittanceFields[] = {
    {"executionDate", &RemittanceColumns::executionDate},
    {"bankCode", &RemittanceColumns::bankCode},
    {"reference", &RemittanceColumns::reference},
    {"orderParty", &RemittanceColumns::orderParty},
    {"sender", &RemittanceColumns::sender},
};

constexpr Switch<OrderColumns> kOrderSwitches[] = {
    {"isAmountCredit", &OrderColumns::isAmountCredit},
    {"isBankCodeBicOrig", &OrderColumns::isBankCodeBicOrig},
    {"isAccountIbanOrig", &OrderColumns::isAccountIbanOrig},
    {"isBankCodeBicRecip", &OrderColumns::isBankCodeBicRecip},
    {"isAccountIbanRecip", &OrderColumns::isAccountIbanRecip},
};

constexpr Field<OrderColumns> kOrderFields[] = {
    {"currency", &OrderColumns::amountCurrency},
    {"executionDate", &OrderColumns::executionDate},
    {"bankCodeOrig", &OrderColumns::bankCodeOrig},
    {"accountCurrencyOrig", &OrderColumns::accountCurrencyOrig},
    {"accountNumberOrig", &OrderColumns::accountNumberOrig},
    {"accountHolderOrig", &OrderColumns::accountHolderOrig},
    {"bankCodeRecip", &OrderColumns::bankCodeRecip},
    {"accountCurrencyRecip", &OrderColumns::accountCurrencyRecip},
    {"accountNumberRecip", &OrderColumns::accountNumberRecip},
    {"accountHolderRecip", &OrderColumns::accountHolderRecip},
    {"label", &OrderColumns::label},
};

// A field that the profile file gives no column is left out.
bool IsMapped(int column)
{
    return (column >= 0 && column < amounts::kMultiColumn) || column == amounts::kOrderCount ||
           column == amounts::kTotalCurrency;
}

template <typename Record, std::size_t Count>
void WriteSwitches(JsonStream& json, const char* key, const Record& record,
                   const Switch<Record> (&switches)[Count])
{
    json.BeginObject(key);
    for (const Switch<Record>& each : switches)
    {
        json.Flag(each.name, record.*each.value);
    }
    json.End();
}

void WriteMapped(JsonStream& json, const char* name, int column, const amounts::DelimitedRow& row,
                 const RowTotals& totals)
{
    if (IsMapped(column))
    {
        json.Text(name, support::Utf8FromNarrow(ColumnValue(column, row, totals)));
    }
}

template <typename Record, std::size_t Count>
void WriteFields(JsonStream& json, const Record& record, const Field<Record> (&fields)[Count],
                 const amounts::DelimitedRow& row, const RowTotals& totals)
{
    for (const Field<Record>& field : fields)
    {
        WriteMapped(json, field.name, record.*field.column, row, totals);
    }
}

// The account may be made of several columns.
void WriteAccount(JsonStream& json, const TVeuFile& file, const amounts::DelimitedRow& row,
                  const RowTotals& totals)
{
    constexpr const char* kName = "accountNumber";
    if (file.IsAccountMultiColumn())
    {
        json.Text(kName, support::Utf8FromNarrow(JoinedValue(file.GetAccountColumns(), row)));
        return;
    }
    WriteMapped(json, kName, file.GetRemittanceColumns().accountNumber, row, totals);
}

// The country may be a constant.
void WriteCountry(JsonStream& json, const TVeuFile& file, const amounts::DelimitedRow& row,
                  const RowTotals& totals)
{
    constexpr const char* kName = "country";
    const int column = file.GetRemittanceColumns().country;
    if (column == amounts::kConstant)
    {
        json.Text(kName, support::Utf8FromNarrow(file.GetCountry()));
        return;
    }
    WriteMapped(json, kName, column, row, totals);
}

} // namespace

DisplayJson::DisplayJson(JsonStream& json, OrderWalk& walk, const DisplayProfile& profile,
                         const DisplayColumns& remittance, const DisplayColumns& order)
    : m_json(json), m_details(walk.Remittances()), m_orders(walk.Orders()),
      m_remittance(remittance), m_order(order)
{
    walk.Remittances().LoadRemittanceSection(profile.remittance.c_str());
    walk.Orders().LoadOrderSection(profile.order.c_str());
    WriteSwitches(m_json, "remittanceSwitches", m_details.GetRemittanceColumns(),
                  kRemittanceSwitches);
    WriteSwitches(m_json, "orderSwitches", m_orders.GetOrderColumns(), kOrderSwitches);
    WriteLabels("remittanceLabels", m_remittance);
    WriteLabels("orderLabels", m_order);
    m_json.BeginArray("remittances");
}

void DisplayJson::WriteLabels(const char* key, const DisplayColumns& columns)
{
    m_json.BeginArray(key);
    for (const DisplayColumns::Column& column : columns.Columns())
    {
        m_json.Text({}, support::Utf8FromNarrow(column.label));
    }
    m_json.End();
}

void DisplayJson::WriteShown(const DisplayColumns& columns, const amounts::DelimitedRow& row,
                             const RowTotals& totals)
{
    m_json.BeginArray("shown");
    for (const std::string& value : columns.Values(row, totals))
    {
        m_json.Text({}, support::Utf8FromNarrow(value));
    }
    m_json.End();
}

void DisplayJson::BeginRemittance()
{
    m_isFirstCurrency = true;
    m_json.BeginObject();
}

void DisplayJson::Currency(const amounts::DelimitedRow& row, const RowTotals& totals)
{
    if (m_isFirstCurrency)
    {
        WriteFields(m_json, m_details.GetRemittanceColumns(), kRemittanceFields, row, totals);
        WriteAccount(m_json, m_details, row, totals);
        WriteCountry(m_json, m_details, row, totals);
        m_json.BeginArray("totals");
        m_isFirstCurrency = false;
    }
    m_json.BeginObject();
    m_json.Number("total", totals.total);
    m_json.Text("currency", support::Utf8FromNarrow(totals.currency));
    m_json.Number("orders", totals.orders);
    WriteShown(m_remittance, row, totals);
    m_json.End();
}

void DisplayJson::BeginOrders()
{
    if (m_isFirstCurrency)
    {
        m_json.BeginArray("totals");
    }
    m_json.End();
    m_json.BeginArray("orders");
}

void DisplayJson::Order(const amounts::DelimitedRow& row, std::uint64_t number)
{
    const OrderColumns& columns = m_orders.GetOrderColumns();
    m_json.BeginObject();
    m_json.Number("number", std::to_string(number));
    if (IsMapped(columns.amount))
    {
        m_json.Number("amount", ColumnValue(columns.amount, row, {}));
    }
    WriteFields(m_json, columns, kOrderFields, row, {});
    WriteShown(m_order, row, {});
    m_json.End();
}

void DisplayJson::EndRemittance()
{
    m_json.End();
    m_json.End();
}

void DisplayJson::End()
{
    m_json.End();
}

} // namespace host
