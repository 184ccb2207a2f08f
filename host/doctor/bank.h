#pragma once

#include "host/connection.h"
#include "host/doctor/finding.h"

class CDatabase;

namespace doctor
{

/// The bank's database, open.
struct Bank
{
    CDatabase& database;
    const host::Connection& where;
};

/// Opens the database and tells of driver and connection. An embedded database that is not there is
/// not made. Whether it is open then.
[[nodiscard]] bool OpenBank(const Bank& bank, Findings& findings);

} // namespace doctor
