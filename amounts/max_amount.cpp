#include "amounts/format_conversion.h"

#include "amounts/tveufile.h"
#include "amounts/work_files.h"
#include "signutils/amount_units.h"
#include "support/checked_copy.h"
#include "support/currencies.h"
#include "support/trace.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace
{

constexpr std::size_t kErrorTextSize = 256;
constexpr std::size_t kCurrencySize = 4;
constexpr int kTraceLevel = 1;

/// Gives the decimals of one row's currency after the other. Neighbours nearly always have the
/// same.
class CurrencyDecimals
{
public:
    std::uint16_t Of(std::string_view currency)
    {
        if (!m_known || currency != m_currency)
        {
            m_currency = currency;
            m_decimals = GlobalResourceDevise == nullptr
                             ? kUnknownDecimals
                             : GlobalResourceDevise->GetDecimals(m_currency.c_str(), 0);
            m_known = true;
        }
        return m_decimals;
    }

private:
    std::string m_currency;
    std::uint16_t m_decimals = kUnknownDecimals;
    bool m_known = false;
};

class Analysis
{
public:
    Analysis(const amounts::AmountSource& source, amounts::FileTotals& totals, char* currencyCode)
        : m_trace(source.trace), m_totals(totals), m_currencyCode(currencyCode)
    {
    }

    void ReadRemittances(TDelimitedFile& file);
    void ReadOrders(TDelimitedFile& file);
    void TraceTotals() const;
    void ReadErrors(TDelimitedFile& file);
    const TSimpleString& ErrorList() const noexcept { return m_errorList; }

private:
    double Value(std::string_view amount, std::string_view currency);
    void TraceAmount(const char* label, double amount) const;

    void* m_trace;
    amounts::FileTotals& m_totals;
    char* m_currencyCode;
    CurrencyDecimals m_decimals;
    TSimpleString m_scratch;
    TSimpleString m_errorList;
};

// In the currency's main unit.
double Analysis::Value(std::string_view amount, std::string_view currency)
{
    std::uint16_t decimals = m_decimals.Of(currency);
    return UnitsToAmount(AmountTextToUnits(amount, decimals));
}

void Analysis::ReadRemittances(TDelimitedFile& file)
{
    std::string amount;
    std::string currency;
    amounts::ForEachRow(file, amounts::kMarker,
                        [&](const amounts::DelimitedRow& row)
                        {
                            amount = row.GetAt(amounts::kRemittanceTotal);
                            currency = row.GetAt(amounts::kRemittanceCurrency);
                            m_totals.totalAmount += Value(amount, currency);
                            if (m_currencyCode != nullptr)
                            {
                                support::TruncatingCopy(m_currencyCode, kCurrencySize,
                                                        currency.c_str());
                            }
                            m_scratch.GenerateString("%s %s", amount.c_str(), currency.c_str());
                            TraceValue(m_trace, "Remise", m_scratch.SafeGetString(), kTraceLevel);
                        });
}

void Analysis::ReadOrders(TDelimitedFile& file)
{
    amounts::ForEachRow(file, amounts::kMarker,
                        [&](const amounts::DelimitedRow& row)
                        {
                            const std::string_view amount = row.GetAt(amounts::kOrderAmount);
                            const double value = Value(amount, row.GetAt(amounts::kOrderCurrency));
                            if (value > m_totals.maxOrderAmount)
                            {
                                m_totals.maxOrderAmount = value;
                            }
                            ++m_totals.orderCount;
                        });
}

void Analysis::TraceAmount(const char* label, double amount) const
{
    if (TraceIsUsable(m_trace))
    {
        TSimpleString text;
        text.GenerateString("%20.0f", amount);
        TraceValue(m_trace, label, text.SafeGetString(), kTraceLevel);
    }
}

void Analysis::TraceTotals() const
{
    TraceAmount("Max. Order Amount", m_totals.maxOrderAmount);
    TraceAmount("Total File Amount", m_totals.totalAmount);
}

void Analysis::ReadErrors(TDelimitedFile& file)
{
    amounts::ForEachRow(
        file, amounts::kErrorPosition,
        [&](const amounts::DelimitedRow& row)
        {
            if (TraceIsUsable(m_trace))
            {
                m_scratch.GenerateString("Err %s (record %s) : %s",
                                         std::string(row.GetAt(amounts::kErrorNumber)).c_str(),
                                         std::string(row.GetAt(amounts::kErrorRecord)).c_str(),
                                         std::string(row.GetAt(amounts::kErrorMessage)).c_str());
                TraceValue(m_trace, "Error", m_scratch.SafeGetString(), kTraceLevel);
            }
            // Without a trace the scratch text still holds the last remittance, and that is
            // what each error adds to the list, on purpose. What lies beyond the caller's
            // buffer is not kept: a file may have a million errors.
            if (m_errorList.GetLength() < kErrorTextSize)
            {
                m_errorList += m_errorList.IsEmpty() ? "" : ";";
                m_errorList += m_scratch;
            }
        });
}

} // namespace

namespace amounts
{

void ReadFileTotals(const AmountSource& source, FileTotals& totals, char* currencyCode,
                    char* errorText)
{
    totals = FileTotals();
    const auto open = [&](const WorkFileKind& kind)
    { return TVeuFile(WorkFilePath(source.fileName, kind).c_str(), OneLineHeader(kind)); };
    Analysis analysis(source, totals, currencyCode);
    // Each reader is closed before the files are deleted: an open file stays on Windows.
    {
        TVeuFile remittances = open(kTotalsFile);
        analysis.ReadRemittances(remittances);
        totals.complete = remittances.IsIntact();
    }
    {
        TVeuFile orders = open(kOrdersFile);
        analysis.ReadOrders(orders);
        totals.complete = totals.complete && orders.IsIntact();
    }
    analysis.TraceTotals();
    {
        TVeuFile errors = open(kErrorsFile);
        analysis.ReadErrors(errors);
    }
    if (errorText != nullptr && !analysis.ErrorList().IsEmpty())
    {
        support::TruncatingCopy(errorText, kErrorTextSize, analysis.ErrorList().SafeGetString());
    }
}

int GetMaxAmountFile(const AmountSource& source, FileTotals& totals, char* currencyCode,
                     char* errorText)
{
    TimeTraceDump(source.trace, "GET MAX AMOUNT AUTHORIZED", 0, 0);
    totals = FileTotals();
    if (ExecWorkFmt(source, errorText) == 0)
    {
        return 0;
    }
    ReadFileTotals(source, totals, currencyCode, errorText);
    DeleteWorkFiles(source.fileName);
    return 1;
}

} // namespace amounts
