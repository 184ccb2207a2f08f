#pragma once

#include "schema/scripts.h"

#include <string>

class CDatabase;

namespace schema
{

/// The product of an open database. Raises SchemaError for one without table definitions.
Product ProductOf(CDatabase& database);

/// A name in capitals, as the scripts write it; PostgreSQL folds names to small letters.
std::string CapitalName(std::string name);

} // namespace schema
