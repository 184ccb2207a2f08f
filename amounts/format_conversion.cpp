#include "amounts/format_conversion.h"

#include "port/kernel.h"
#include "support/checked_copy.h"
#include "support/trace.h"

#include <cstddef>

namespace
{

constexpr unsigned int kFormatMissing = 287;
constexpr std::size_t kErrorTextSize = 256;

bool IsMissing(const char* text)
{
    return text == nullptr || *text == '\0';
}

// Why the engine did not run.
TSimpleString RunConversion(const amounts::AmountSource& source)
{
    TSimpleString error;
    if (IsMissing(source.format1) || IsMissing(source.format2) || IsMissing(source.fileName))
    {
        error.LoadStringA(kFormatMissing);
        return error;
    }
    // This version has no way to register a conversion engine, so the run object is never there.
    error.GenerateString("Initialize CFFmtRun Error : %d", static_cast<int>(GetLastError()));
    return error;
}

} // namespace

namespace amounts
{

int ExecWorkFmt(const AmountSource& source, char* errorText)
{
    const TSimpleString error = RunConversion(source);
    if (errorText != nullptr)
    {
        support::TruncatingCopy(errorText, kErrorTextSize, error.SafeGetString());
    }
    return 0;
}

int GetMaxAmountFile(const AmountSource& source, FileTotals& totals, char* /*currencyCode*/,
                     char* errorText)
{
    TimeTraceDump(source.trace, "GET MAX AMOUNT AUTHORIZED", 0, 0);
    totals = FileTotals();
    // Without a conversion there are no work files to read the totals from.
    return ExecWorkFmt(source, errorText);
}

} // namespace amounts
