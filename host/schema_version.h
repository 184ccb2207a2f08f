#pragma once

#include "host/connection.h"

#include <string>

class CDatabase;

namespace host
{

/// Raises Refusal with kCouldNotRun when the schema is newer than this program, whose statements
/// may then mean something else. Returns a warning when it is older or has no version, else
/// nothing. A version that may not be read is no fault.
std::string CheckSchemaVersion(CDatabase& database, const Connection& connection);

} // namespace host
