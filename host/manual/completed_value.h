#pragma once

#include "host/command_table.h"

#include <string>
#include <vector>

namespace manual
{

/// What a shell can offer where the value of an option or argument stands.
enum class Completed
{
    Nothing,
    Choices,
    Commands,
    Files,
    Folders,
};

Completed CompletedValueOf(const host::OptionSpec& option);

/// The choices of an option that has some.
std::vector<std::string> ChoicesOf(const host::OptionSpec& option);

/// With their dashes, the name that the help shows first: "--format", "--output-format".
std::vector<std::string> DashedNamesOf(const host::OptionSpec& option);

/// The argument of a command; null when it has none.
const host::OptionSpec* ArgumentOf(const host::CommandSpec& command);

} // namespace manual
