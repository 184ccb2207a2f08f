#pragma once

#include "database/connection_string.h"
#include "host/doctor/finding.h"

#include <optional>
#include <string>
#include <vector>

namespace doctor
{

/// Whether the driver that a connection string names is one of the installed ones; what it says of
/// itself, only a connection tells. A driver named by its file must be there. `installed` is what
/// the driver manager lists, nothing when it does not answer.
Finding CheckDriverName(const database::ConnectionString& connection,
                        const std::optional<std::vector<std::string>>& installed);

/// "apt install libsqliteodbc": how the driver that is most likely meant is installed; empty when
/// none is known.
std::string PackageAdvice(const std::string& driver);

} // namespace doctor
