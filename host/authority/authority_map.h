#pragma once

#include "host/authority/bands.h"
#include "host/authority/parties.h"
#include "host/rulebook/rule_book.h"
#include "host/scratch/copy.h"
#include "host/scratch/judge.h"

#include <cstddef>
#include <string>
#include <vector>

namespace authority
{

/// One verdict of the map; the same for every order of its cell.
struct Verdict
{
    unsigned int number = scratch::kNoRule;
    std::string reasonCode;

    bool operator==(const Verdict&) const = default;
};

/// Verdicts by cell.
using Line = std::vector<Verdict>;

/// Who signs together, and what comes of it.
struct Row
{
    std::vector<std::size_t> parties; ///< rising; a party twice when two of its names sign
    std::vector<std::string> signers; ///< certificate names that stand for them
    std::string label;
    Line direct;      ///< the order arrives with all its signatures
    Line distributed; ///< signatures arrive one by one (VEU)
};

/// Who may release what, for one kind of order.
struct AuthorityMap
{
    scratch::OrderKind kind;
    bool isOtherTypes = false; ///< the type stands for every one that has no rules of its own
    std::vector<Party> parties;
    std::vector<Cell> cells;
    /// Nobody, each party, each two; of three those whose third signature changes something.
    std::vector<Row> rows;
    /// Whether every set of three and more decides as its pairs say; see VerdictOfPairs.
    bool pairsDecide = true;
};

/// Asks the library about every row and cell. Raises host::Refusal.
AuthorityMap MakeMap(scratch::Judge& judge, const rulebook::RuleBook& book,
                     const scratch::OrderKind& kind);

/// What the pairs among three or more signers tell of all of them: refused where any pair is, else
/// accepted where any pair is, else no rule.
unsigned int VerdictOfPairs(const std::vector<unsigned int>& pairs);

/// Judges `signers` in every cell at its least and its greatest amounts. Raises host::Refusal when
/// the two differ, so that no map is wrong without a word.
Line JudgeLine(scratch::Judge& judge, const std::vector<std::string>& signers, bool isDistributed,
               const std::vector<Cell>& cells);

} // namespace authority
