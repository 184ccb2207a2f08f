#pragma once

#include "host/option_values.h"

namespace host
{

/// `signcheck events`: shows the audit events in EVT_JOURNAL, the newest first.
int RunEvents(const OptionValues& values);

} // namespace host
