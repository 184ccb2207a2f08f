#pragma once

#include <string>

class CDatabase;

namespace database
{

/// What an open database and its driver tell of themselves.
struct ServerFacts
{
    std::string product;
    std::string version;
    std::string driver; ///< the driver's file
    std::string driverVersion;
};

/// Raises CDBException*.
ServerFacts FactsOf(CDatabase& database);

} // namespace database
