#include "host/amounts_command.h"

#include "host/conversion.h"
#include "host/exit_status.h"
#include "host/file_amounts.h"
#include "host/file_errors.h"
#include "host/json_stream.h"
#include "host/output.h"
#include "host/text.h"
#include "support/codepage.h"
#include "support/format.h"

namespace host
{

namespace
{

constexpr const char* kTitles = "REMITTANCE                        TOTAL  CUR       ORDERS\n"
                                "----------  ---------------------------  ---  -----------\n";
constexpr const char* kRow = "%-10s  %27s  %-3s  %11s\n";

/// The remittances with their counts, one row for each of their currencies.
class Remittances
{
public:
    explicit Remittances(const std::string& order)
        : m_file(amounts::WorkFilePath(order.c_str(), amounts::kCountsFile).c_str(),
                 amounts::OneLineHeader(amounts::kCountsFile))
    {
    }

    template <typename Take>
    void ForEach(Take&& take)
    {
        amounts::ForEachRow(m_file, amounts::kMarker,
                            [&take](const amounts::DelimitedRow& row)
                            {
                                if (row.GetAt(amounts::kRecord) != amounts::kWholeFileRecord)
                                {
                                    take(row);
                                }
                            });
    }

private:
    TDelimitedFile m_file;
};

std::string NarrowFieldOf(const amounts::DelimitedRow& row, std::size_t column)
{
    return std::string(row.GetAt(column));
}

void Write(const OrderSource& order, const FileAmounts& figures, Remittances& remittances,
           FileErrors& errors)
{
    JsonStream json;
    json.Text("file", order.shown);
    json.Text("format", order.format.Name());
    json.Number("total", figures.total);
    json.Number("largestOrder", figures.largest);
    json.Number("orders", std::to_string(figures.orders));
    json.Text("currency", figures.currency);
    json.BeginArray("remittances");
    remittances.ForEach(
        [&json](const amounts::DelimitedRow& row)
        {
            json.BeginObject();
            json.Number("total", row.GetAt(amounts::kRemittanceTotal));
            json.Text("currency", support::Utf8FromNarrow(row.GetAt(amounts::kRemittanceCurrency)));
            json.Number("orders", row.GetAt(amounts::kRemittanceOrders));
            json.End();
        });
    json.End();
    errors.Write(json);
    json.BeginArray("warnings");
    for (const std::string& warning : WarningsOf(figures))
    {
        json.Text({}, warning);
    }
    json.End();
    json.Finish();
}

std::string InCurrency(const std::string& amount, const std::string& currency)
{
    return amount + (currency.empty() ? "" : " ") + currency;
}

std::string Summary(const OrderSource& order, const FileAmounts& figures)
{
    const bool isMixed = figures.currencies.size() > 1;
    std::string words = "Order     " + Printable(order.shown) + "\n";
    words += "Format    " + order.format.Name() + "\n";
    words += "Total     " +
             (isMixed ? figures.total + " of several currencies, added as they stand"
                      : InCurrency(figures.total, figures.currency)) +
             "\n";
    if (isMixed)
    {
        for (const auto& [currency, amount] : figures.currencies)
        {
            words += "          " + InCurrency(amount.total, currency) + " in " + amount.orders +
                     (amount.orders == "1" ? " order\n" : " orders\n");
        }
    }
    words += "Largest   " + InCurrency(figures.largest, figures.largestCurrency) + "\n";
    words += "Orders    " + std::to_string(figures.orders) + "\n";
    return words;
}

void PrintWords(const OrderSource& order, const FileAmounts& figures, Remittances& remittances,
                FileErrors& errors)
{
    Print(Summary(order, figures) + "\n" + kTitles);
    remittances.ForEach(
        [](const amounts::DelimitedRow& row)
        {
            const std::string line =
                support::FormatA(kRow, NarrowFieldOf(row, amounts::kRecord).c_str(),
                                 NarrowFieldOf(row, amounts::kRemittanceTotal).c_str(),
                                 NarrowFieldOf(row, amounts::kRemittanceCurrency).c_str(),
                                 NarrowFieldOf(row, amounts::kRemittanceOrders).c_str());
            Print(support::Utf8FromNarrow(line));
        });
    if (!errors.IsEmpty())
    {
        Print("\nErrors\n");
        errors.Print();
    }
}

} // namespace

int RunAmounts(const OptionValues& values)
{
    const OrderSource order = ReadOrderSource(values, "amounts");
    Conversion conversion(order);
    const FileAmounts figures = ReadFileAmounts(order.path);
    Remittances remittances(order.path);
    FileErrors errors(order.path);
    conversion.Remove();
    const int status = errors.IsEmpty() ? kDone : kFindings;
    for (const std::string& warning : WarningsOf(figures))
    {
        Warn(warning);
    }
    values.IsOn("json") ? Write(order, figures, remittances, errors)
                        : PrintWords(order, figures, remittances, errors);
    return status;
}

} // namespace host
