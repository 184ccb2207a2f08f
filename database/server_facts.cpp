#include "database/server_facts.h"

#include "database/cdatabase.h"
#include "database/connection.h"

namespace database
{

ServerFacts FactsOf(CDatabase& database)
{
    Connection& connection = database.GetConnection();
    return {connection.InfoText(SQL_DBMS_NAME), connection.InfoText(SQL_DBMS_VER),
            connection.InfoText(SQL_DRIVER_NAME), connection.InfoText(SQL_DRIVER_VER)};
}

} // namespace database
