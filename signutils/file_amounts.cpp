#include "signutils/signutils.h"

#include "amounts/format_conversion.h"
#include "support/measures.h"

int SignUtils::ExecWorkFmt(const char* fileName, char* errorText)
{
    const support::Stopwatch time(&support::Measures::conversionTime);
    return amounts::ExecWorkFmt(
        {fileName, m_format1.SafeGetString(), m_format2.SafeGetString(), m_trace}, errorText);
}

int SignUtils::GetMaxAmountFile(const char* fileName, double& totalAmount, double& maxOrderAmount,
                                int& orderCount, char* currencyCode, char* errorText)
{
    amounts::FileTotals totals;
    const support::Stopwatch time(&support::Measures::conversionTime);
    const int worked = amounts::GetMaxAmountFile(
        {fileName, m_format1.SafeGetString(), m_format2.SafeGetString(), m_trace}, totals,
        currencyCode, errorText);
    totalAmount = totals.totalAmount;
    maxOrderAmount = totals.maxOrderAmount;
    orderCount = totals.orderCount;
    return worked;
}
