#include "amounts/format_conversion.h"

#include "amounts/tveufile.h"
#include "port/files.h"
#include "signutils/amount_units.h"
#include "support/checked_copy.h"
#include "support/currencies.h"
#include "support/trace.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace
{

constexpr std::size_t kErrorTextSize = 256;
constexpr std::size_t kCurrencySize = 4;
constexpr int kTraceLevel = 1;
constexpr int kFourHeaderLines = 0;
constexpr int kOneHeaderLine = 1;

/// Columns of the three work files that are read.
constexpr std::size_t kMarker = 1; ///< a row without it ends the file
constexpr std::size_t kRemittanceTotal = 2;
constexpr std::size_t kRemittanceCurrency = 3;
constexpr std::size_t kOrderAmount = 4;
constexpr std::size_t kOrderCurrency = 5;
constexpr std::size_t kErrorPosition = 0; ///< a row without it ends the error file
constexpr std::size_t kErrorRecord = 2;
constexpr std::size_t kErrorNumber = 3;
constexpr std::size_t kErrorMessage = 4;

// Deleted in this order.
constexpr const char* kWorkFiles[] = {"%s.veu.bp",  "%s.veu.cp",  "%s.veu.cp2",
                                      "%s.veu.tot", "%s.veu.err", "%s.veu"};

TSimpleString WorkFileName(const char* format, const char* fileName)
{
    TSimpleString name;
    name.GenerateString(format, fileName);
    return name;
}

/// Amount and currency of one row. The texts keep their storage from row to row.
struct RowAmount
{
    std::string amount;
    std::string currency;

    void Take(const amounts::DelimitedRow& row, std::size_t amountColumn,
              std::size_t currencyColumn)
    {
        amount = row.GetAt(amountColumn);
        currency = row.GetAt(currencyColumn);
    }

    /// In the currency's main unit.
    double Value() const
    {
        std::uint16_t decimals = GlobalResourceDevise == nullptr
                                     ? kUnknownDecimals
                                     : GlobalResourceDevise->GetDecimals(currency.c_str(), 0);
        return UnitsToAmount(AmountTextToUnits(amount.c_str(), decimals));
    }
};

/// Calls `take` for each row until one lacks its marker.
template <typename Take>
void ForEachRow(TDelimitedFile& file, std::size_t marker, Take&& take)
{
    for (bool more = file.HasRow(); more && !file.CurrentRow().GetAt(marker).empty();
         more = file.NextRow())
    {
        take(file.CurrentRow());
    }
}

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
    void TraceAmount(const char* label, double amount) const;

    void* m_trace;
    amounts::FileTotals& m_totals;
    char* m_currencyCode;
    TSimpleString m_scratch;
    TSimpleString m_errorList;
};

void Analysis::ReadRemittances(TDelimitedFile& file)
{
    RowAmount remittance;
    ForEachRow(file, kMarker,
               [&](const amounts::DelimitedRow& row)
               {
                   remittance.Take(row, kRemittanceTotal, kRemittanceCurrency);
                   m_totals.totalAmount += remittance.Value();
                   if (m_currencyCode != nullptr)
                   {
                       support::TruncatingCopy(m_currencyCode, kCurrencySize,
                                               remittance.currency.c_str());
                   }
                   m_scratch.GenerateString("%s %s", remittance.amount.c_str(),
                                            remittance.currency.c_str());
                   TraceValue(m_trace, "Remise", m_scratch.SafeGetString(), kTraceLevel);
               });
}

void Analysis::ReadOrders(TDelimitedFile& file)
{
    RowAmount order;
    ForEachRow(file, kMarker,
               [&](const amounts::DelimitedRow& row)
               {
                   order.Take(row, kOrderAmount, kOrderCurrency);
                   const double value = order.Value();
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
    ForEachRow(file, kErrorPosition,
               [&](const amounts::DelimitedRow& row)
               {
                   if (TraceIsUsable(m_trace))
                   {
                       m_scratch.GenerateString("Err %s (record %s) : %s",
                                                std::string(row.GetAt(kErrorNumber)).c_str(),
                                                std::string(row.GetAt(kErrorRecord)).c_str(),
                                                std::string(row.GetAt(kErrorMessage)).c_str());
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

void DeleteWorkFiles(const char* fileName)
{
    for (const char* const format : kWorkFiles)
    {
        DeleteFileA(WorkFileName(format, fileName).SafeGetString());
    }
}

} // namespace

namespace amounts
{

int GetMaxAmountFile(const AmountSource& source, FileTotals& totals, char* currencyCode,
                     char* errorText)
{
    TimeTraceDump(source.trace, "GET MAX AMOUNT AUTHORIZED", 0, 0);
    totals = FileTotals();
    if (ExecWorkFmt(source, errorText) == 0)
    {
        return 0;
    }
    const auto open = [&](const char* format, int oneLineHeader)
    { return TVeuFile(WorkFileName(format, source.fileName).SafeGetString(), oneLineHeader); };
    Analysis analysis(source, totals, currencyCode);
    // Each reader is closed before the files are deleted: an open file stays on Windows.
    {
        TVeuFile remittances = open("%s.veu.bp", kFourHeaderLines);
        analysis.ReadRemittances(remittances);
    }
    {
        TVeuFile orders = open("%s.veu.cp", kFourHeaderLines);
        analysis.ReadOrders(orders);
    }
    analysis.TraceTotals();
    {
        TVeuFile errors = open("%s.veu.err", kOneHeaderLine);
        analysis.ReadErrors(errors);
    }
    if (errorText != nullptr && !analysis.ErrorList().IsEmpty())
    {
        support::TruncatingCopy(errorText, kErrorTextSize, analysis.ErrorList().SafeGetString());
    }
    DeleteWorkFiles(source.fileName);
    return 1;
}

} // namespace amounts
