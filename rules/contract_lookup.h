#pragma once

#include "containers/tarray.h"
#include "rules/check_signatures.h"
#include "rules/cuidrule.h"

namespace rules
{

/// Reads the contract's rule lines or, when it has none, the contract itself, in the order in which
/// the database gives them. Raises CDBException*; the rules read before stay in `rules`.
void LoadRules(CDatabase& database, void* trace, const ContractKey& contract,
               TArray<cuidRule>& rules);

} // namespace rules
