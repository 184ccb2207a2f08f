#include "host/authority/bands.h"

#include "host/amount_text.h"
#include "signutils/amount_units.h"
#include "support/codepage.h"
#include "support/messages.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace authority
{

namespace
{

constexpr std::int64_t kTotalLevel = 0;
constexpr std::int64_t kLargestLevel = 1;
// An order whose amount cannot be read counts as this.
constexpr double kLargestAmount = 999999999999999999.0;

bool Concerns(const rulebook::Contract& contract, const scratch::OrderKind& kind)
{
    return std::any_of(contract.terms.begin(), contract.terms.end(),
                       [&kind](const auto& terms)
                       { return terms.type == kind.type && terms.key == kind.contract; });
}

void Sort(std::vector<double>& limits)
{
    std::sort(limits.begin(), limits.end());
    limits.erase(std::unique(limits.begin(), limits.end()), limits.end());
}

std::vector<Band> BandsBetween(const std::vector<double>& limits)
{
    std::vector<Band> bands;
    std::optional<double> above;
    for (const double limit : limits)
    {
        bands.push_back({above, limit});
        above = limit;
    }
    bands.push_back({above, std::nullopt});
    return bands;
}

double Least(const Band& band)
{
    return band.above ? std::nextafter(*band.above, std::numeric_limits<double>::infinity()) : 0.0;
}

double Greatest(const Band& band)
{
    return band.upTo ? *band.upTo : std::max(kLargestAmount, 2 * band.above.value_or(0.0));
}

bool IsPossible(const Cell& cell)
{
    return Least(cell.largest) <= Greatest(cell.total);
}

std::string InWords(const Band& band, const std::string& what)
{
    if (!band.above && !band.upTo)
    {
        return {};
    }
    std::string words = what;
    words += band.above ? " above " + host::RuleAmount(*band.above) : std::string();
    words += band.above && band.upTo ? "," : "";
    words += band.upTo ? " up to " + host::RuleAmount(*band.upTo) : std::string();
    return words;
}

} // namespace

double LimitOf(const rulebook::Rule& rule)
{
    std::string narrow;
    support::NarrowFromUtf8(rule.amount.value_or(std::string()), narrow);
    std::uint16_t decimals = kUnknownDecimals;
    return UnitsToAmount(AmountTextToUnits(narrow.c_str(), decimals));
}

Limits LimitsOf(const rulebook::RuleBook& book, const scratch::OrderKind& kind)
{
    Limits limits;
    for (const rulebook::Contract& contract : book.contracts)
    {
        if (!Concerns(contract, kind))
        {
            continue;
        }
        for (const rulebook::Rule& rule : contract.rules)
        {
            const std::int64_t level = rule.level.value_or(kTotalLevel);
            const double limit = LimitOf(rule);
            if (limit >= 0.0 && (level == kTotalLevel || level == kLargestLevel))
            {
                (level == kTotalLevel ? limits.total : limits.largest).push_back(limit);
            }
        }
    }
    Sort(limits.total);
    Sort(limits.largest);
    return limits;
}

std::vector<Cell> CellsOf(const Limits& limits)
{
    std::vector<Cell> cells;
    for (const Band& total : BandsBetween(limits.total))
    {
        for (const Band& largest : BandsBetween(limits.largest))
        {
            if (const Cell cell = {total, largest}; IsPossible(cell))
            {
                cells.push_back(cell);
            }
        }
    }
    return cells;
}

Amounts LeastOf(const Cell& cell)
{
    const double largest = Least(cell.largest);
    return {std::max(Least(cell.total), largest), largest};
}

Amounts GreatestOf(const Cell& cell)
{
    // An unbounded total is still the greater of the two.
    const double total =
        cell.total.upTo ? *cell.total.upTo : std::max(Greatest(cell.total), Greatest(cell.largest));
    return {total, std::min(Greatest(cell.largest), total)};
}

Amounts UsualOf(const Cell& cell)
{
    constexpr double kUsual = 1000000.0;
    const double above =
        2 * std::max(cell.total.above.value_or(0.0), cell.largest.above.value_or(0.0));
    const double total = cell.total.upTo.value_or(std::max(kUsual, above));
    return {total, std::min(cell.largest.upTo.value_or(total), total)};
}

std::string InWords(const Cell& cell)
{
    const std::string total = InWords(cell.total, "total");
    const std::string largest = InWords(cell.largest, "largest order");
    if (total.empty() && largest.empty())
    {
        return "any amount";
    }
    return total + (total.empty() || largest.empty() ? "" : "; ") + largest;
}

} // namespace authority
