#pragma once

#include "database/odbc.h"

namespace database
{

/// Whether UTF-16 reaches the connection's driver letter by letter. The driver manager converts it
/// for a driver without wide entry points of its own, and what has no place in that code page may
/// become anything: U+0427, cut to its low byte, and U+02BC, by its looks, an apostrophe, which
/// ends a literal. Asks the driver, not the server; false when the driver cannot be asked.
bool KeepsLetters(SQLHDBC connection);

} // namespace database
