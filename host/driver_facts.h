#pragma once

#include "database/connection_string.h"

#include <string>

namespace host
{

/// Whether a connection string names a driver of SQLite.
bool NamesSqlite(const database::ConnectionString& connection);

/// Whether a failed connect never reached its driver, by the state that it was told with: the
/// driver manager found none or could not load it.
bool IsDriverMissing(const std::string& state);

} // namespace host
