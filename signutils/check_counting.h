#pragma once

#include "signutils/check_outcome.h"
#include "support/check_counts.h"

namespace signutils
{

/// Counts a check that has ended. `service`: that of the contract, Windows-1252.
void CountCheck(const CheckOutcome& outcome, const char* service,
                support::CheckCounts& counts) noexcept;

} // namespace signutils
