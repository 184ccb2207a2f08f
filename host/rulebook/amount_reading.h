#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace rulebook
{

/// What a person may take an amount text for, and what a check takes it for.
struct AmountReading
{
    /// Decimals without grouping or needless zeros: one, several where it can be read in two ways,
    /// none where it is no amount.
    std::vector<std::string> meant;
    std::string read;    ///< by a check
    bool isRead = false; ///< `read` is the one amount that was meant
};

/// Reads the text of an amount, UTF-8.
AmountReading ReadingOf(std::string_view text);

} // namespace rulebook
