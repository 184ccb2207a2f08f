#pragma once

#include "containers/tarray.h"
#include "rules/rulesign.h"
#include "support/tsimplestring.h"
#include "support/tsimplestringw.h"

#include <cstdint>

namespace rules
{

/// How a verdict is announced.
struct VerdictHeading
{
    const char* title;
    unsigned short level; ///< of the journal event
};

/// Any number but 0, 1 and 2 counts as a processing error.
const VerdictHeading& HeadingOf(std::uint32_t verdict);

/// The heading, CR LF and the lines journalled by the rules.
TSimpleStringW EventText(const VerdictHeading& heading, const TSimpleStringW& journal);

/// Reduces at least one decision to the verdict. The first failed decision writes the reason,
/// even where its own is empty; without one the reason stays as it is.
std::uint32_t ReduceDecisions(const TArray<ruleSign>& decisions, TSimpleString& reasonCode,
                              TSimpleStringW& reasonText);

} // namespace rules
