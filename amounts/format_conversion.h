#pragma once

#include "support/tsimplestring.h"

namespace amounts
{

/// What the analysis of one order file needs. Texts are Windows-1252 and borrowed for the call.
struct AmountSource
{
    const char* fileName;
    const char* format1; ///< chooses the work, e.g. "ISO20022"
    const char* format2; ///< e.g. "pain.001"
    void* trace;
};

/// Totals of one order file, in the currency's main unit.
struct FileTotals
{
    double totalAmount = 0.0;
    double maxOrderAmount = 0.0;
    int orderCount = 0;
    /// The work files of remittances and orders were there and could be read to their ends. Without
    /// them the amounts are too small, and that is no failure.
    bool complete = false;
};

/// Runs the format-conversion engine on the file, so that it leaves its work files beside it.
/// 1 on success; 0 with `errorText` (256 characters, may be null) filled.
int ExecWorkFmt(const AmountSource& source, char* errorText);

/// Works out the totals from work files that lie there, and leaves them. `currencyCode` (4
/// characters) and `errorText` may be null; what has nothing to be written in it stays.
void ReadFileTotals(const AmountSource& source, FileTotals& totals, char* currencyCode,
                    char* errorText);

/// Works out the totals from the work files and deletes them. `currencyCode` (4 characters) may be
/// null. 0 when the conversion failed, else 1, also for a file with errors.
int GetMaxAmountFile(const AmountSource& source, FileTotals& totals, char* currencyCode,
                     char* errorText);

} // namespace amounts
