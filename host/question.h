#pragma once

#include "host/option_values.h"

#include <string>

namespace host
{

/// Refuses a command that would have to ask where nobody can answer: with --json, or where standard
/// input is no terminal, unless --yes is given. `lookFirst` is a sentence: how to see beforehand
/// what would be done. Raises UsageRefusal.
void RequireAnswer(const OptionValues& values, const std::string& lookFirst);

/// Whether --yes was given, or the question is answered with yes.
bool IsAgreed(const OptionValues& values, const std::string& question);

} // namespace host
