#pragma once

#include "tests/model/plain_lookups.h"
#include "tests/model/scenario.h"
#include "tests/model/tables.h"

#include <cstdint>
#include <vector>

namespace model
{

/// A rule as it is judged.
struct Rule
{
    Text cuid;
    bool active = false;
    bool allHolders = false;
    bool alone = false;
    double limit = 0.0;
    std::int32_t tlevel = 0;
    std::int32_t profile = 0;
    Text huid1;
    Text huid2;
};

struct Decision
{
    Text reasonCode;
    Text reasonText;
    Text message;
    Signer signer1;
    Signer signer2;
    bool failed = false;
    std::int32_t controlType = 0;
};

/// What a run of the rules is given.
struct Case
{
    const Session& session;
    std::vector<Signer> signers; ///< of the session, those of earlier calls first
    Text signerList;             ///< of this call, as the host wrote it
    double total = 0.0;
    double largest = 0.0;
};

/// The rules of the session's contract; false when a name of it would end its literal, or when the
/// query failed on the way.
bool LoadRules(const Tables& tables, const Session& session, std::vector<Rule>& rules,
               Account& account);

/// Judges the rules one after the other; a rule that does not concern the signers decides nothing.
std::vector<Decision> Judge(const Tables& tables, const std::vector<Rule>& rules, const Case& given,
                            Account& account);

/// 0 without a decision, 2 with a failed one, else 1. The first failed decision writes the reason;
/// otherwise it stays as it is.
std::uint32_t VerdictOf(const std::vector<Decision>& decisions, Text& reasonCode, Text& reasonText);

} // namespace model
