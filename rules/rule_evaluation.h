#pragma once

#include "containers/tarray.h"
#include "rules/cuidrule.h"
#include "rules/rulesign.h"
#include "signers/holder_lookup.h"
#include "support/tsimplestringw.h"

namespace rules
{

/// What the rules of one check are judged against. Amounts in the currency's main unit.
struct SigningFacts
{
    signers::HolderDirectory directory; ///< holds the trace handle too
    const TArray<signerInfo>& signers;  ///< the session's; stays as it is
    int signerCount;                    ///< of them, read once: every rule judges the same signers
    const wchar_t* signerList;          ///< as the caller gave it
    bool veu;                           ///< distributed signatures, arriving one by one
    double totalAmount;
    double maxOrderAmount;
};

/// Judges each rule in its order. A rule that concerns the signers leaves a decision; every finding
/// is added to `journal` as a line ended by CR LF. The rules' holder slots are filled on the way.
void EvaluateRules(const SigningFacts& facts, TArray<cuidRule>& rules, TArray<ruleSign>& decisions,
                   TSimpleStringW& journal);

/// Appends a text and CR LF.
void Journal(TSimpleStringW& journal, const TSimpleStringW& text);

} // namespace rules
