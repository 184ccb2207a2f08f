#pragma once

#include "amounts/format_conversion.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace host
{

/// What the orders of one currency come to.
struct CurrencyAmount
{
    std::string total; ///< plain decimal, exact
    std::string orders;
};

/// The amounts of one order file: exact, and as the library judges on them.
struct FileAmounts
{
    std::string total;   ///< plain decimal, exact; adds amounts whatever their currencies
    std::string largest; ///< of one order; "0" without any
    std::string largestCurrency;
    std::string currency; ///< the last remittance's, as in a check; empty without any
    std::uint64_t orders = 0;
    std::map<std::string, CurrencyAmount> currencies;
    amounts::FileTotals judged;
    bool isExact = true; ///< else an amount was no plain decimal and the figures are the library's
};

/// Reads the amounts from the work files beside the order file; `order` is Windows-1252.
FileAmounts ReadFileAmounts(const std::string& order);

/// What whoever reads the amounts must know of them, a sentence each: figures of the library that
/// differ from the exact ones, several currencies in one sum.
std::vector<std::string> WarningsOf(const FileAmounts& figures);

} // namespace host
