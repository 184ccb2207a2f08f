#pragma once

#include "host/doctor/bank.h"
#include "host/doctor/finding.h"

#include <cstdint>
#include <string>

namespace doctor
{

// What is looked at in an open database. Nothing is written; each raises CDBException*,
// host::Refusal or schema::SchemaError where the database refuses.

/// The version that the database records beside this program's.
Findings CheckSchemaVersion(const Bank& bank);

/// Every table with its columns, as the scripts of the product declare them.
Findings CheckTables(const Bank& bank);

/// Every index of the scripts.
Findings CheckIndexes(const Bank& bank);

/// What a check must be allowed: to read the rules and to add history rows and events.
Findings CheckRights(const Bank& bank);

/// The database's clock, which dates history rows, beside this machine's.
Findings CheckClock(const Bank& bank);

/// A look at the database's clock between two at this machine's; local times in seconds.
struct ClockReading
{
    std::int64_t before = 0;
    std::int64_t there = 0;
    std::int64_t after = 0;
};

/// A difference of more than 2 seconds is told, and as one of time zones where it may be one.
Finding JudgeClock(const ClockReading& reading);

} // namespace doctor
