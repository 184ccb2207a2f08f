#include "host/schema_version.h"

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "host/refusal.h"
#include "host/text.h"
#include "schema/installer.h"

namespace host
{

std::string CheckSchemaVersion(CDatabase& database, const Connection& connection)
{
    const int ours = schema::CurrentVersion();
    int found = ours;
    database::GuardDatabase([&] { found = schema::InstalledVersion(database); },
                            [](const CDBException&) {}, [] {});
    if (found == ours)
    {
        return {};
    }
    const std::string where = connection.origin + ": the database " + Quoted(connection.shown);
    const std::string version = " has schema version " + std::to_string(found);
    if (found > ours)
    {
        throw Refusal(kCouldNotRun, where + version + ", newer than version " +
                                        std::to_string(ours) +
                                        " of this program. Use a newer signcheck.");
    }
    return where +
           (found == 0
                ? std::string(" has no schema version recorded")
                : version + ", older than version " + std::to_string(ours) + " of this program") +
           ". Bring it up to date: run signcheck init --db CONN.";
}

} // namespace host
