#pragma once

#include "host/authority/authority_map.h"
#include "host/scratch/copy.h"

#include <cstddef>
#include <string>
#include <vector>

namespace authority
{

/// One rule as the library decides it when it is the only one, for the rows and cells of a map.
struct RuleLines
{
    std::string cuid;
    std::size_t number = 0; ///< within its contract, from 1
    rulebook::Rule rule;
    std::vector<Line> direct; ///< by row
    std::vector<Line> distributed;

    /// "rule 2 of C-7001".
    std::string Name() const;

    const Line& Of(std::size_t row, bool isDistributed) const
    {
        return isDistributed ? distributed[row] : direct[row];
    }
};

/// The book with this rule alone.
rulebook::RuleBook BookOfOneRule(const rulebook::RuleBook& book, const scratch::OrderKind& kind,
                                 const std::string& cuid, std::size_t number);

/// Every rule that the library meets for the map's kind of order, in the order of the book. The
/// copy holds the last rule's book at the end.
std::vector<RuleLines> JudgeRulesAlone(scratch::Copy& copy, scratch::Judge& judge,
                                       const rulebook::RuleBook& book, const AuthorityMap& map);

} // namespace authority
