#pragma once

#include "host/option_values.h"
#include "host/rulebook/rule_file.h"

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

/// Reads and checks the file; `database` as for Validate. Raises UsageRefusal when there is no such
/// file.
CheckedFile CheckRuleFile(const host::OptionValue& path, const RuleBook* database);

/// Tells warnings and problems on standard error. Raises Refusal with kFindings when there is a
/// problem; `consequence` ends its text.
void RefuseProblems(const CheckedFile& checked, const std::string& consequence);

} // namespace rulebook
