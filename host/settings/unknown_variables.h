#pragma once

#include <string>
#include <vector>

namespace host
{

/// A variable that is named as those of signcheck are and that nothing reads.
struct UnknownVariable
{
    std::string name;
    std::string meant; ///< the one that it is most likely misspelt for; empty when none is near
    bool isOfOneRun = false; ///< named after an option that counts on the command line only

    /// Whether somebody expects an effect of it. Else it may be anybody's: a script's own, or what
    /// a cluster sets for a service of that name.
    bool IsMistake() const { return isOfOneRun || !meant.empty(); }
};

/// Those that are set, by name. Their values stay unread: one may be a password.
std::vector<UnknownVariable> UnknownVariables();

/// A sentence: "SIGNCHECK_PARNTER is not known; did you mean SIGNCHECK_PARTNER?"
std::string InWords(const UnknownVariable& variable);

/// Warns of the mistakes among them on standard error.
void WarnOfUnknownVariables();

} // namespace host
