#pragma once

#include "host/rulebook/text_checks.h"

#include <string>

namespace rulebook
{

/// Warns of the rules of a contract that hardly do what their author meant: those that concern
/// nobody, limit nothing or refuse everything. `path` is the contract's.
void DoubtRules(const std::string& path, const Contract& contract, FileChecker& checker);

} // namespace rulebook
