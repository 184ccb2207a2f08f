#pragma once

#include "host/rulebook/neighbours.h"
#include "host/rulebook/text_checks.h"

namespace rulebook
{

/// Adds what is wrong or doubtful about the holders of a book and their certificates, also beside
/// those who stay in the database.
void ValidateHolders(const RuleBook& book, const Neighbours& neighbours, FileChecker& checker);

} // namespace rulebook
