#pragma once

#include "host/option_values.h"

namespace rulebook
{

/// signcheck rules import-holders: adds holders and certificates of a CSV file, in one transaction.
/// Returns the exit status.
int RunImportHolders(const host::OptionValues& values);

} // namespace rulebook
