#pragma once

#include <optional>
#include <string>
#include <vector>

namespace database
{

/// The drivers that the driver manager knows by name, in its order. Nothing when the driver manager
/// itself does not answer.
std::optional<std::vector<std::string>> InstalledDrivers();

} // namespace database
