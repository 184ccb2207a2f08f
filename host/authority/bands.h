#pragma once

#include "host/rulebook/rule_book.h"
#include "host/scratch/judge.h"

#include <optional>
#include <string>
#include <vector>

namespace authority
{

/// Amounts above one limit and up to the next, the upper one included; main unit.
struct Band
{
    std::optional<double> above; ///< none: from 0 on
    std::optional<double> upTo;  ///< none: without end

    bool operator==(const Band&) const = default;
};

/// Orders between two limits of the total and two of the largest order. No rule can tell them
/// apart.
struct Cell
{
    Band total;
    Band largest;

    bool operator==(const Cell&) const = default;
};

/// Total and largest order of an order file.
struct Amounts
{
    double total = 0.0;
    double largest = 0.0;
};

/// The limits that the rules of this kind of order set, in rising order, each once, from 0 on.
struct Limits
{
    std::vector<double> total;
    std::vector<double> largest;
};

Limits LimitsOf(const rulebook::RuleBook& book, const scratch::OrderKind& kind);

/// The limit of a rule as the library reads it from the column.
double LimitOf(const rulebook::Rule& rule);

/// Every order file whose largest order is not above its total lies in exactly one of them.
std::vector<Cell> CellsOf(const Limits& limits);

/// The least and the greatest amounts of a cell: just above its lower limits and at its upper ones.
Amounts LeastOf(const Cell& cell);
Amounts GreatestOf(const Cell& cell);
/// Amounts of the cell that a file may well have: at its upper limits, or some way above its lower
/// ones.
Amounts UsualOf(const Cell& cell);

/// "total up to 5000.00, largest order above 100.00"; an axis without limits is left out, and
/// "any amount" says that both are.
std::string InWords(const Cell& cell);

} // namespace authority
