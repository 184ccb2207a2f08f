#include "signutils/amount_units.h"
#include "support/currencies.h"
#include "tests/fuzz/target.h"
#include "tests/fuzz/work_files.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>

namespace fuzz
{

namespace
{

// Amounts here count 10^-7 of the main unit. 18 digits before the point need 84 bits of the 127, so
// that no sum of a test's orders overflows.
__extension__ using Units = __int128;

constexpr unsigned kUnitDecimals = 7;
constexpr std::uint16_t kUnknown = 0xFFFF;
constexpr std::array kErrorNumbers = {1,  2,  3,  4,  5,  6,  7,  10, 11, 12,
                                      13, 20, 21, 30, 31, 32, 40, 41, 42, 43};

struct Sum
{
    Units total = 0;
    std::uint64_t rows = 0;
};
using Sums = std::map<std::string_view, Sum>;

bool AllDigits(std::string_view text)
{
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// A small whole number.
std::uint64_t Number(std::string_view text)
{
    Require(AllDigits(text) && text.size() <= 18, "no whole number: ", text);
    std::uint64_t number = 0;
    for (const char digit : text)
    {
        number = number * 10U + static_cast<std::uint64_t>(digit - '0');
    }
    return number;
}

std::uint16_t DecimalsOf(std::string_view currency)
{
    return GlobalResourceDevise->GetDecimals(std::string(currency).c_str(), 0);
}

void CheckCurrency(std::string_view currency)
{
    Require(currency.size() == 3 && std::all_of(currency.begin(), currency.end(),
                                                [](char c) { return c >= 'A' && c <= 'Z'; }),
            "no currency code: ", currency);
}

// Digits, and the point with exactly the currency's decimals behind it.
Units AmountOf(std::string_view text, std::string_view currency)
{
    const std::uint16_t decimals = DecimalsOf(currency);
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    const std::string_view fraction =
        point == std::string_view::npos ? std::string_view() : text.substr(point + 1U);
    Require(AllDigits(whole), "an amount without digits before its point: ", text);
    Require(whole.size() == 1 || whole[0] != '0', "an amount with leading zeros: ", text);
    if (decimals == kUnknown)
    {
        Require(fraction.size() >= 2 && fraction.size() <= kUnitDecimals,
                "an amount of other than 2 to 7 decimals: ", text);
    }
    else
    {
        Require((point == std::string_view::npos) == (decimals == 0),
                "a point too many or few: ", text);
        Require(fraction.size() == decimals, "an amount of other decimals: ", text);
    }
    Units units = 0;
    for (const char character : text)
    {
        const bool digit = character >= '0' && character <= '9';
        Require(digit || character == '.', "an amount that is no number: ", text);
        units = digit ? units * 10 + (character - '0') : units;
    }
    for (std::size_t i = fraction.size(); i < kUnitDecimals; ++i)
    {
        units *= 10;
    }
    return units;
}

// The conversion that the analysis uses must read the amount rightly.
void CheckReadBack(std::string_view text, std::string_view currency, Units units)
{
    constexpr Units kMost = 9'000'000'000'000'000'000;
    std::uint16_t decimals = DecimalsOf(currency);
    const std::int64_t read = AmountTextToUnits(std::string(text).c_str(), decimals);
    Require(units > kMost || read == units, "an amount that is read otherwise: ", text);
}

void AddTo(Sums& sums, std::string_view text, std::string_view currency)
{
    CheckCurrency(currency);
    const Units units = AmountOf(text, currency);
    CheckReadBack(text, currency, units);
    Sum& sum = sums[currency];
    sum.total += units;
    ++sum.rows;
}

void CheckOrder(const Row& row)
{
    Require(!row[0].empty() && row[1] == "1", "an order without its marks");
    Require(row[4] == row[16] && row[5] == row[17], "an order with two amounts");
    Require(row[7] == "0" || row[7] == "1", "an urgency that is none: ", row[7]);
    Require(row[8].empty() || (row[8].size() == 8 && AllDigits(row[8])),
            "a date that is none: ", row[8]);
}

// Sums of the orders from the first one to before the last one.
Sums OrderSums(const std::vector<Row>& orders, std::size_t first, std::size_t last)
{
    Sums sums;
    for (std::size_t i = first; i < last; ++i)
    {
        CheckOrder(orders[i]);
        AddTo(sums, orders[i][4], orders[i][5]);
    }
    return sums;
}

void CheckRemittance(const Row& row, const Row& detail, const Row& total)
{
    Require(!row[0].empty() && row[1] == "1", "a remittance without its marks");
    Require(detail[1] == "1" && detail[0] == row[0] && detail[8] == row[3],
            "details of another remittance");
    Require(Row(total.begin(), total.begin() + 4) == row, "a total of another remittance");
}

void CompareSums(const Sums& parts, const Sums& wholes)
{
    Require(parts.size() == wholes.size(), "sums of other currencies");
    for (const auto& [currency, part] : parts)
    {
        const auto whole = wholes.find(currency);
        Require(whole != wholes.end() && whole->second.total == part.total,
                "a sum that is not that of the orders in ", currency);
    }
}

void CheckErrors(const std::vector<Row>& errors)
{
    for (const Row& row : errors)
    {
        const int number = static_cast<int>(Number(row[3]));
        Require(std::find(kErrorNumbers.begin(), kErrorNumbers.end(), number) !=
                    kErrorNumbers.end(),
                "an unknown error number: ", row[3]);
        Number(row[0]);
        Require(row[1] == "1" && !row[4].empty(), "an error without its mark or text");
    }
}

// The remittances one after another, each with the orders that its counts say.
void CheckRemittances(const WorkFiles& files)
{
    std::size_t order = 0;
    for (std::size_t i = 0; i < files.remittances.size();)
    {
        const std::string_view record = files.remittances[i][0];
        const std::size_t first = order;
        Sums remittance;
        std::map<std::string_view, std::uint64_t> counts;
        for (; i < files.remittances.size() && files.remittances[i][0] == record; ++i)
        {
            const Row& row = files.remittances[i];
            CheckRemittance(row, files.details[i], files.totals[i]);
            AddTo(remittance, row[2], row[3]);
            counts[row[3]] = Number(files.totals[i][4]);
            order += counts[row[3]];
        }
        Require(order <= files.orders.size(), "more orders are counted than written");
        const Sums orders = OrderSums(files.orders, first, order);
        CompareSums(orders, remittance);
        for (const auto& [currency, sum] : orders)
        {
            Require(sum.rows == counts[currency], "another number of orders in ", currency);
        }
    }
    Require(order == files.orders.size(), "orders of no remittance");
}

// The rows of the whole file: one for each currency, behind those of the remittances.
void CheckFileTotals(const WorkFiles& files)
{
    const Sums orders = OrderSums(files.orders, 0, files.orders.size());
    Sums totals;
    for (std::size_t i = files.remittances.size(); i < files.totals.size(); ++i)
    {
        const Row& row = files.totals[i];
        Require(row[0] == "*" && row[1] == "1", "a total of the file without its marks");
        AddTo(totals, row[2], row[3]);
        const auto counted = orders.find(row[3]);
        Require(counted != orders.end() && counted->second.rows == Number(row[4]),
                "a total of another number of orders");
        Require(totals[row[3]].rows == 1, "two totals of ", row[3]);
    }
    CompareSums(orders, totals);
    Require(files.mainLines.size() == totals.size() + 1U, "a line for each currency and one");
    Require(
        files.mainLines.back().ends_with(", " + std::to_string(files.orders.size()) + " orders"),
        "the main file counts other orders");
}

} // namespace

void CheckWorkFiles(const WorkFiles& files)
{
    CheckErrors(files.errors);
    Require(files.remittances.size() == files.details.size() &&
                files.remittances.size() <= files.totals.size(),
            "remittances without details or totals");
    CheckRemittances(files);
    CheckFileTotals(files);
}

} // namespace fuzz
