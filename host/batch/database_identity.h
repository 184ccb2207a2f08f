#pragma once

#include "host/connection.h"

#include <string>

namespace batch
{

/// Which database a connection string stands for: the text as it may be shown, so that another
/// password is the same database, with the one path of an embedded database's file, whatever folder
/// the run was started in. What a data source's name (DSN=) stands for it does not tell. UTF-8.
std::string DatabaseIdentity(const host::Connection& connection);

} // namespace batch
