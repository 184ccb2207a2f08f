#pragma once

#include <string>
#include <vector>

namespace engine_tests
{

using Fields = std::vector<std::string>;

/// The data rows of a work file, split at their quotes; `headerLines` lines are passed over.
std::vector<Fields> ReadRows(const std::string& path, std::size_t headerLines);

/// Names of the folder's entries.
std::vector<std::string> Names(const std::string& folder);

} // namespace engine_tests
