#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host
{

/// A plain decimal text: digits, with digits behind one point or none.
bool IsDecimal(std::string_view text);

/// Whether `left` is the smaller number. Both are plain decimals.
bool IsSmallerDecimal(std::string_view left, std::string_view right);

/// A sum of decimal texts, exact whatever their length.
class DecimalSum
{
public:
    /// False, with nothing added, for what is no plain decimal.
    [[nodiscard]] bool Add(std::string_view text);

    /// With as many decimals as the most precise text added; "0" without any.
    std::string Text() const;

private:
    std::string m_digits = "0"; // without a point
    std::size_t m_decimals = 0;
};

} // namespace host
