#pragma once

#include "support/export.h"
#include "support/tsimplestring.h"

namespace signutils
{

// What the process measures of its checks, for operations: counters, histograms of times, depth of
// the spool. docs/metrics.md has the names. Both functions for any thread at any time.

/// From now on checks, conversions and statements are counted and timed. There is no way back;
/// another call changes nothing.
SIGNUTILS_API void StartMeasures();

/// Writes them in the text format that Prometheus reads into a file that every user may read:
/// whoever opens it finds the text of before or this one, whole. The file's name without its ending
/// is the label `source` of every sample. `path` is Windows-1252. False, with one line in `problem`
/// (Windows-1252) and the file as it was, when it cannot be written, when StartMeasures was not
/// called, and when something else lies there: what is no plain file, or one that holds anything
/// but such a text.
SIGNUTILS_API bool WriteMeasures(const char* path, TSimpleString& problem);

} // namespace signutils
