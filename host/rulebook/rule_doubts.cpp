#include "host/rulebook/rule_doubts.h"

#include "host/rulebook/amount_reading.h"
#include "host/rulebook/rule_file_fields.h"
#include "host/text.h"

#include <algorithm>
#include <iterator>

namespace rulebook
{

namespace
{

// What stands there and could not be read was told already.
bool IsMissing(const std::string& path, const std::optional<std::string>& text,
               const FileChecker& checker)
{
    return text ? text->empty() : !checker.Stands(path);
}

// Terms for all holders accept before a rule is looked at.
bool AreRulesJudged(const Contract& contract)
{
    return std::any_of(contract.terms.begin(), contract.terms.end(),
                       [](const ContractTerms& terms)
                       { return terms.allHolders.value_or(0) == 0; });
}

bool IsCompared(std::int64_t level)
{
    return std::any_of(std::begin(kLevels), std::end(kLevels),
                       [level](const NumberWord& word) { return word.number == level; });
}

bool IsBelowZero(const std::string& amount)
{
    const AmountReading reading = ReadingOf(amount);
    return reading.isRead && reading.read.starts_with('-');
}

void DoubtHolders(const std::string& path, const Rule& rule, FileChecker& checker)
{
    if (!IsMissing(path + "." + kHolder1, rule.huid1, checker))
    {
        return;
    }
    if (IsMissing(path + "." + kHolder2, rule.huid2, checker))
    {
        checker.Doubtful(path, "the rule names no holder: it concerns nobody.",
                         "Add holder1 = \"…\", or take the rule out.");
    }
    else if (rule.alone.value_or(0) != 0)
    {
        checker.Doubtful(path + "." + kHolder2,
                         "a rule for one alone looks for its holder1 only, and there is none: it "
                         "concerns nobody.",
                         "Write the holder as holder1.");
    }
}

void DoubtLimit(const std::string& path, const Rule& rule, FileChecker& checker)
{
    const std::int64_t level = rule.level.value_or(kLevels[0].number);
    const std::string amount = path + "." + kAmount;
    if (!IsCompared(level))
    {
        checker.Doubtful(path + "." + kLevel,
                         "level " + std::to_string(level) +
                             " limits no amount: a check compares the total at level \"file\", the "
                             "largest order at level \"largest-order\" and nothing at any other.",
                         "Write one of the two words, unless the rule is to accept any amount.");
    }
    else if (!rule.amount && !checker.Stands(amount))
    {
        checker.Doubtful(amount,
                         "it is missing; a check takes that for 0.00 and refuses every order above "
                         "it.",
                         "Add amount = \"1500.00\", the greatest that the rule is to accept.");
    }
    else if (rule.amount && IsBelowZero(*rule.amount))
    {
        checker.Doubtful(amount,
                         host::Quoted(*rule.amount) +
                             " is below zero: the rule refuses every order, one of 0.00 too.",
                         "Write the greatest amount that the rule is to accept.");
    }
}

} // namespace

void DoubtRules(const std::string& path, const Contract& contract, FileChecker& checker)
{
    if (!AreRulesJudged(contract))
    {
        return;
    }
    for (std::size_t index = 0; index < contract.rules.size(); ++index)
    {
        const std::string item = Places::Item(path + "." + kRules, index);
        DoubtHolders(item, contract.rules[index], checker);
        DoubtLimit(item, contract.rules[index], checker);
    }
}

} // namespace rulebook
