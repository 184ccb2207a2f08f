#pragma once

#include "host/rulebook/rule_file.h"

#include <set>
#include <string>

namespace rulebook
{

/// Adds everything about a file that a check would not take as it is written, and what is hardly
/// meant so. `knownHolders`: who besides those of the file may be named in rules.
void Validate(const RuleFile& file, const std::set<std::string>& knownHolders, Problems& problems);

} // namespace rulebook
