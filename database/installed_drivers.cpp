#include "database/installed_drivers.h"

#include "database/odbc.h"
#include "database/odbc_handle.h"

namespace database
{

std::optional<std::vector<std::string>> InstalledDrivers()
{
    EnvironmentHandle environment;
    if (!SQL_SUCCEEDED(environment.Allocate(SQL_NULL_HANDLE)) ||
        !SQL_SUCCEEDED(SQLSetEnvAttr(environment.Get(), SQL_ATTR_ODBC_VERSION,
                                     // ODBC passes numbers of attributes as pointers.
                                     // NOLINTNEXTLINE(performance-no-int-to-ptr)
                                     reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0)))
    {
        return std::nullopt;
    }
    std::vector<std::string> names;
    char name[256] = {};
    char attributes[4096] = {};
    SQLSMALLINT nameLength = 0;
    SQLSMALLINT attributesLength = 0;
    for (SQLUSMALLINT direction = SQL_FETCH_FIRST;
         SQL_SUCCEEDED(SQLDrivers(environment.Get(), direction, reinterpret_cast<SQLCHAR*>(name),
                                  static_cast<SQLSMALLINT>(sizeof name), &nameLength,
                                  reinterpret_cast<SQLCHAR*>(attributes),
                                  static_cast<SQLSMALLINT>(sizeof attributes), &attributesLength));
         direction = SQL_FETCH_NEXT)
    {
        names.emplace_back(name);
    }
    return names;
}

} // namespace database
