#include "host/file_amounts.h"

#include "amounts/work_files.h"
#include "host/decimal_sum.h"
#include "support/codepage.h"
#include "support/format.h"

#include <string_view>

namespace host
{

namespace
{

constexpr std::size_t kCurrencyRoom = 4;
constexpr const char* kUsualAmount = "0.00";

TDelimitedFile Open(const std::string& order, const amounts::WorkFileKind& kind)
{
    return TDelimitedFile(amounts::WorkFilePath(order.c_str(), kind).c_str(),
                          amounts::OneLineHeader(kind));
}

std::size_t DecimalsOf(const std::string& text)
{
    const std::size_t point = text.find('.');
    return point == std::string::npos ? 0 : text.size() - point - 1U;
}

// The library's figure with as many decimals as the exact one has.
std::string WithDecimalsOf(const std::string& exact, double judged)
{
    const std::string format = "%." + std::to_string(DecimalsOf(exact)) + "f";
    return support::FormatA(format.c_str(), judged);
}

void ReadTotal(const std::string& order, FileAmounts& figures)
{
    TDelimitedFile file = Open(order, amounts::kTotalsFile);
    DecimalSum total;
    amounts::ForEachRow(file, amounts::kMarker,
                        [&](const amounts::DelimitedRow& row) {
                            figures.isExact =
                                total.Add(row.GetAt(amounts::kRemittanceTotal)) && figures.isExact;
                        });
    figures.total = total.Text();
}

void ReadOrders(const std::string& order, FileAmounts& figures)
{
    TDelimitedFile file = Open(order, amounts::kOrdersFile);
    figures.largest = "0";
    amounts::ForEachRow(file, amounts::kMarker,
                        [&](const amounts::DelimitedRow& row)
                        {
                            const std::string_view amount = row.GetAt(amounts::kOrderAmount);
                            ++figures.orders;
                            if (!IsDecimal(amount))
                            {
                                figures.isExact = false;
                            }
                            else if (IsSmallerDecimal(figures.largest, amount))
                            {
                                figures.largest = amount;
                                figures.largestCurrency =
                                    support::Utf8FromNarrow(row.GetAt(amounts::kOrderCurrency));
                            }
                        });
}

void ReadCurrencies(const std::string& order, FileAmounts& figures)
{
    TDelimitedFile file = Open(order, amounts::kCountsFile);
    amounts::ForEachRow(file, amounts::kMarker,
                        [&figures](const amounts::DelimitedRow& row)
                        {
                            if (row.GetAt(amounts::kRecord) == amounts::kWholeFileRecord)
                            {
                                figures.currencies[support::Utf8FromNarrow(
                                    row.GetAt(amounts::kRemittanceCurrency))] = {
                                    std::string(row.GetAt(amounts::kRemittanceTotal)),
                                    std::string(row.GetAt(amounts::kRemittanceOrders))};
                            }
                        });
}

void WarnOfDifference(const char* what, const std::string& exact, double judged,
                      std::vector<std::string>& warnings)
{
    if (const std::string shown = WithDecimalsOf(exact, judged); shown != exact)
    {
        warnings.push_back(std::string("the ") + what + " is " + exact +
                           ", but a check judges on " + shown +
                           ": it adds binary numbers of 15 to 17 digits and takes no amount above "
                           "922337203685.47.");
    }
}

} // namespace

FileAmounts ReadFileAmounts(const std::string& order)
{
    FileAmounts figures;
    char currency[kCurrencyRoom] = {};
    amounts::ReadFileTotals({order.c_str(), nullptr, nullptr, nullptr}, figures.judged, currency,
                            nullptr);
    figures.currency = support::Utf8FromNarrow(currency);
    ReadTotal(order, figures);
    ReadOrders(order, figures);
    ReadCurrencies(order, figures);
    if (!figures.isExact)
    {
        figures.total = WithDecimalsOf(kUsualAmount, figures.judged.totalAmount);
        figures.largest = WithDecimalsOf(kUsualAmount, figures.judged.maxOrderAmount);
    }
    return figures;
}

std::vector<std::string> WarningsOf(const FileAmounts& figures)
{
    std::vector<std::string> warnings;
    if (!figures.isExact)
    {
        warnings.emplace_back("an amount of the work files is no plain decimal; total and largest "
                              "order are what the library made of it.");
    }
    WarnOfDifference("total", figures.total, figures.judged.totalAmount, warnings);
    WarnOfDifference("largest order", figures.largest, figures.judged.maxOrderAmount, warnings);
    if (figures.currencies.size() > 1)
    {
        warnings.push_back("the orders have " + std::to_string(figures.currencies.size()) +
                           " currencies; a check adds their amounts as they stand and names the "
                           "sum " +
                           figures.currency + ".");
    }
    return warnings;
}

} // namespace host
