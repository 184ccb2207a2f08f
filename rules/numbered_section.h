#pragma once

#include "support/trace.h"
#include "support/tsimplestring.h"

namespace rules
{

/// Opens a section of the trace whose title has a number. Without a trace no title is made.
inline void TraceNumberedSection(void* trace, const char* title, int number)
{
    if (TraceIsUsable(trace))
    {
        TSimpleString text;
        text.GenerateString(title, number);
        TimeTraceDump(trace, text.SafeGetString(), 0, 0);
    }
}

} // namespace rules
