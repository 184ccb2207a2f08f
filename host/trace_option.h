#pragma once

#include "host/option_values.h"

#include <string>

namespace host
{

/// The file of --trace, which a trace is appended to, in Windows-1252; empty without the option.
/// Raises UsageRefusal for a file that is there and begins as no trace does: an order or a database
/// that was named by mistake.
std::string TraceFileFrom(const OptionValues& values);

} // namespace host
