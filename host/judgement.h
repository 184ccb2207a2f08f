#pragma once

#include "host/check_request.h"
#include "host/check_result.h"

namespace host
{

/// Has the library judge once, with a session of its own. What the audit event says beyond the
/// outcome is left out. Raises UsageRefusal when the trace file cannot be written.
CheckResult AskLibrary(const CheckRequest& request);

} // namespace host
