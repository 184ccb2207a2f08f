#include "host/authority/rule_lines.h"

#include <algorithm>

namespace authority
{

namespace
{

bool Concerns(const rulebook::ContractTerms& terms, const scratch::OrderKind& kind)
{
    return terms.type == kind.type && terms.key == kind.contract;
}

} // namespace

std::string RuleLines::Name() const
{
    return "rule " + std::to_string(number) + " of " + cuid;
}

rulebook::RuleBook BookOfOneRule(const rulebook::RuleBook& book, const scratch::OrderKind& kind,
                                 const std::string& cuid, std::size_t number)
{
    rulebook::RuleBook one;
    one.holders = book.holders;
    for (const rulebook::Contract& contract : book.contracts)
    {
        if (contract.cuid != cuid)
        {
            continue;
        }
        rulebook::Contract& kept = one.contracts.emplace_back();
        kept.cuid = contract.cuid;
        std::copy_if(contract.terms.begin(), contract.terms.end(), std::back_inserter(kept.terms),
                     [&kind](const auto& terms) { return Concerns(terms, kind); });
        kept.rules = {contract.rules[number - 1]};
    }
    return one;
}

std::vector<RuleLines> JudgeRulesAlone(scratch::Copy& copy, scratch::Judge& judge,
                                       const rulebook::RuleBook& book, const AuthorityMap& map)
{
    std::vector<RuleLines> rules;
    for (const rulebook::Contract& contract : book.contracts)
    {
        const bool isMet =
            std::any_of(contract.terms.begin(), contract.terms.end(),
                        [&map](const auto& terms) { return Concerns(terms, map.kind); });
        for (std::size_t index = 0; isMet && contract.cuid && index < contract.rules.size();
             ++index)
        {
            RuleLines lines;
            lines.cuid = *contract.cuid;
            lines.number = index + 1;
            lines.rule = contract.rules[index];
            copy.Replace(BookOfOneRule(book, map.kind, lines.cuid, lines.number));
            for (const Row& row : map.rows)
            {
                lines.direct.push_back(JudgeLine(judge, row.signers, false, map.cells));
                lines.distributed.push_back(JudgeLine(judge, row.signers, true, map.cells));
            }
            rules.push_back(std::move(lines));
        }
    }
    return rules;
}

} // namespace authority
