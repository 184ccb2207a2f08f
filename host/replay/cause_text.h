#pragma once

#include <string>

namespace replay
{

/// Which rule decides the check of a trace as it is decided, and why, in the language of the
/// messages: "Rule 1 of C-1001: REFUSES: …".
std::string DecidingRule(const std::string& trace);

} // namespace replay
