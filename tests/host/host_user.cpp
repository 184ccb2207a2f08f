#include "tests/host/host_user.h"

#include "database/cdatabase.h"
#include "database/connection_string.h"
#include "database/dialect.h"
#include "database/guard_database.h"
#include "schema/scripts.h"
#include "support/codepage.h"
#include "tests/testing/temporary_folder.h"

namespace testing_support
{

std::string AsHostUser(CDatabase& bank, const std::string& connexionString)
{
    const bool isPostgreSql = bank.GetDialect().product == database::Product::PostgreSql;
    // A role of PostgreSQL may be left from another test.
    database::GuardDatabase(
        [&]
        {
            bank.ExecuteSQLW(isPostgreSql ? L"CREATE ROLE signutils_host LOGIN"
                                          : L"CREATE OR REPLACE USER signutils_host");
        },
        [](const CDBException&) {}, [] {});
    const std::string folder = isPostgreSql ? "postgresql" : "mariadb";
    const std::string grants =
        ReadWholeFile(std::string(SIGNUTILS_SOURCES) + "/schema/" + folder + "/grants.sql");
    for (const std::wstring& statement : schema::SplitStatements(support::WideFromUtf8(grants)))
    {
        bank.ExecuteSQLW(statement.c_str());
    }
    return database::ConnectionString(connexionString).With("UID", kHostUser);
}

} // namespace testing_support
