#include "host/batch/database_identity.h"

#include "database/connection_string.h"
#include "host/driver_facts.h"
#include "port/file_identity.h"
#include "support/codepage.h"

namespace batch
{

std::string DatabaseIdentity(const host::Connection& connection)
{
    const database::ConnectionString parts(connection.shown);
    const std::string file = parts.Value("DATABASE");
    const std::string real =
        host::NamesSqlite(parts) && !file.empty() ? port::RealPath(file) : std::string();
    return real.empty() ? connection.shown : parts.With("DATABASE", real);
}

} // namespace batch
