#pragma once

#include "host/rulebook/rule_file.h"

namespace rulebook
{

/// Adds everything about a file that a check would not take as it is written, and what is hardly
/// meant so. `database`: what the file is to be applied to; its rules may name the holders of it,
/// and nothing of the file may collide with what stays there. Null where nothing of it stays, or
/// none was looked at.
void Validate(const RuleFile& file, const RuleBook* database, Problems& problems);

} // namespace rulebook
