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

} // namespace batch
