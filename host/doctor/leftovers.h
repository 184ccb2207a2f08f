#pragma once

#include "host/doctor/bank.h"
#include "host/doctor/finding.h"
#include "host/option_values.h"

#include <chrono>
#include <optional>

namespace doctor
{

// What a command leaves behind when it is killed. Whether its process still runs is asked of this
// machine; a command of another machine, or in another container, looks as if it were dead, so that
// nothing is removed but what is older than the age that was given.

/// Copies of the rules that map, lint, simulate and pending make for their time, and traces that
/// --explain does. `bank` may be null: then only those that are files are found.
Findings CheckCopies(const Bank* bank, std::optional<std::chrono::seconds> removalAge);

/// Work files and locks in a folder of order files, as argument FOLDER names it. Raises
/// host::Refusal with kCouldNotRun when it cannot be read.
Findings CheckOrderFolder(const host::OptionValue& folder,
                          std::optional<std::chrono::seconds> removalAge);

} // namespace doctor
