#pragma once

#include "host/option_values.h"

#include <cstdint>
#include <string>

namespace listing
{

/// The command with the options that were given on its command line, for the rows below `number`.
/// What a shell would change stands in quotes; a connection string with a password is not repeated
/// but taken from SIGNCHECK_DB.
std::string CommandOfNextPage(const std::string& command, const host::OptionValues& values,
                              std::int64_t number);

} // namespace listing
