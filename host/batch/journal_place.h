#pragma once

#include "host/option_values.h"

#include <string>

namespace batch
{

/// Where the progress of a run is kept: --journal, else a file in the user's own folder, named
/// after the folder or list of orders that is judged, so that whoever may write there has no say in
/// it. The user's own folder is made when it is missing. `judged` is absolute, UTF-8. Raises
/// host::Refusal with kCouldNotRun when there is no such folder to use.
std::string JournalPath(const host::OptionValues& values, const std::string& judged);

/// What the names of journals in the user's own folder end with.
inline constexpr const char* kJournalEnding = ".progress";

/// The lock file of a journal.
std::string JournalLockPath(const std::string& journal);

/// Why a journal must not be trusted: a link, or a file that others than this user may have
/// written. Words behind its name; empty when nothing speaks against it. `journal` is Windows-1252.
std::string FaultOfJournalFile(const std::string& journal);

} // namespace batch
