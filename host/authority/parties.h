#pragma once

#include "host/rulebook/rule_book.h"

#include <cstddef>
#include <string>
#include <vector>

namespace authority
{

/// Certificate names that the rules cannot tell apart, whichever of them signs.
struct Party
{
    std::string label;
    std::vector<std::string> names; ///< as many as can sign one order together, UTF-8
    std::vector<std::string> huids; ///< the holders that have them; none for anyone else
    /// A name with an apostrophe, which fails every look-up of the order that it signs.
    bool breaksLookups = false;
    /// A name that several holders share: who signs by it depends on who else signs.
    bool isShared = false;
};

/// Everybody whom the rules of a book tell apart, and last a party that stands for anyone else.
std::vector<Party> PartiesOf(const rulebook::RuleBook& book);

/// A holder's names for people; the identifier where there are none.
std::string NameOf(const rulebook::Holder& holder);

/// Whether a certificate name can be given to a check at all: not empty, no blanks at its ends,
/// which are trimmed, and no semicolon, which separates signers.
bool CanSign(const std::string& certificateName);

} // namespace authority
