#pragma once

#include "host/rulebook/rule_book.h"

#include <string>

namespace rulebook
{

// A rule book as TOML, UTF-8. NULL is a field that is not there; reading the file gives the same
// book to the last letter.

/// The comments that open a file: what its fields mean.
std::string RuleFileOpening();

/// One table of the file, with a line feed before it.
std::string RuleFileTable(const Holder& holder);
std::string RuleFileTable(const Contract& contract);

} // namespace rulebook
