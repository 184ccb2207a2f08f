#pragma once

#include "database/row_layout.h"
#include "rules/check_signatures.h"
#include "rules/rulesign.h"
#include "support/tsimplestringw.h"

#include <cstdint>
#include <string>

namespace rules
{

// Texts that stand in a literal as they are may end it, which RequireWithinLiterals refuses by
// raising CDBException*; to be called before the statement is run.

void RequireWithinLiterals(const ContractKey& contract);

/// The contract's rule lines.
TSimpleStringW RuleQuery(const ContractKey& contract);
extern const database::RowLayout kRuleRow;

/// The contract itself, for a contract without rule lines; of any order type.
TSimpleStringW ContractQuery(const ContractKey& contract);
extern const database::RowLayout kContractRow;

/// What the history rows of one check have in common.
struct HistoryFacts
{
    const ContractKey& contract;
    const OrderFacts& order;
    const wchar_t* signerList;
    std::uint32_t verdict;
};

/// What a history row tells of one decision, in the form of the statement: quotes doubled.
struct HistoryFinding
{
    std::uint32_t status = kVerdictNoRule; ///< the verdict of the whole check
    std::int32_t controlType = 0;
    TSimpleStringW firstName1;
    TSimpleStringW lastName1;
    TSimpleStringW firstName2;
    TSimpleStringW lastName2;
    TSimpleStringW motif;
};

/// Into a finding that keeps its memory.
void FindingOf(const HistoryFacts& facts, const ruleSign& decision, HistoryFinding& finding);
/// Of a check that no rule concerns; `motif` is the text of that finding.
HistoryFinding FindingOfNoRule(const TSimpleStringW& motif);

/// Quotes in names and MOTIF are doubled, so these are refused only where the cut to their column
/// parts the two halves of one.
void RequireWithinLiterals(const HistoryFacts& facts, const HistoryFinding& finding);

/// Appends the statement.
void AppendHistoryRow(std::wstring& statement, const HistoryFacts& facts,
                      const HistoryFinding& finding);

} // namespace rules
