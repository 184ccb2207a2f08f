#pragma once

#include "host/option_values.h"
#include "host/rulebook/rule_file.h"

#include <set>
#include <string>

namespace rulebook
{

/// A rule file that was read and checked.
struct CheckedFile
{
    std::string name; ///< for messages
    RuleFile file;
    Problems problems;
};

/// The rule file that argument FILE names. Raises UsageRefusal when it is missing.
const host::OptionValue& RuleFileArgument(const host::OptionValues& values);

/// Reads and checks the file. `knownHolders`: who besides those of the file may be named in rules.
/// Raises UsageRefusal when there is no such file.
CheckedFile CheckRuleFile(const host::OptionValue& path, const std::set<std::string>& knownHolders);

/// The identifiers of the book's holders.
std::set<std::string> HolderIds(const RuleBook& book);

/// Tells warnings and problems on standard error. Raises Refusal with kFindings when there is a
/// problem; `consequence` ends its text.
void RefuseProblems(const CheckedFile& checked, const std::string& consequence);

} // namespace rulebook
