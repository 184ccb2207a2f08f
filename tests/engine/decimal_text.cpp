#include "tests/engine/decimal_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>

namespace engine_tests
{

namespace
{

constexpr std::size_t kWhole = 40;
constexpr std::size_t kFraction = 10;

// All digits at their places, so that texts compare and add as numbers do.
std::string Placed(const std::string& amount)
{
    const std::size_t point = amount.find('.');
    const std::string whole = amount.substr(0, point);
    const std::string fraction = point == std::string::npos ? "" : amount.substr(point + 1U);
    if (whole.empty() || whole.size() > kWhole || fraction.size() > kFraction ||
        (whole + fraction).find_first_not_of("0123456789") != std::string::npos)
    {
        ADD_FAILURE() << "no amount: " << amount;
        return std::string(kWhole + kFraction, '0');
    }
    return std::string(kWhole - whole.size(), '0') + whole + fraction +
           std::string(kFraction - fraction.size(), '0');
}

std::string Shown(const std::string& placed)
{
    constexpr std::size_t kFewestDecimals = 2;
    const std::size_t first = std::min(placed.find_first_not_of('0'), kWhole - 1U);
    std::size_t end = placed.find_last_not_of('0');
    end = end == std::string::npos ? 0 : end + 1U;
    end = std::max(end, kWhole + kFewestDecimals);
    return placed.substr(first, kWhole - first) + "." + placed.substr(kWhole, end - kWhole);
}

} // namespace

std::string Normal(const std::string& amount)
{
    return Shown(Placed(amount));
}

std::string Sum(const std::string& left, const std::string& right)
{
    std::string sum = Placed(left);
    const std::string other = Placed(right);
    int carry = 0;
    for (std::size_t at = sum.size(); at-- > 0;)
    {
        const int digits = (sum[at] - '0') + (other[at] - '0') + carry;
        sum[at] = static_cast<char>('0' + digits % 10);
        carry = digits / 10;
    }
    return Shown(sum);
}

std::string Larger(const std::string& left, const std::string& right)
{
    return Shown(std::max(Placed(left), Placed(right)));
}

} // namespace engine_tests
