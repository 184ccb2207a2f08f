#include "schema/needed_columns.h"

#include "database/cdatabase.h"
#include "database/crecordset.h"
#include "database/guard_database.h"

namespace schema
{

namespace
{

bool CanRead(CDatabase& database, const std::string& table, const std::string& columns)
{
    const std::string statement = "SELECT " + columns + " FROM " + table + " WHERE 1=0";
    return database::GuardDatabase(
        [&]
        {
            CRecordset rows(database);
            rows.OpenW(CRecordset::kForwardOnly,
                       std::wstring(statement.begin(), statement.end()).c_str(), 0);
        },
        [](const CDBException&) {}, [] {});
}

} // namespace

const std::vector<NeededTable>& NeededTables()
{
    static const std::vector<NeededTable> needed = {
        {"SSR_VERSION", {"VERSION", "NAME"}},
        {"SSR_HOLDER", {"HUID", "VPNAME", "FNAME", "LNAME", "OPPOSITION"}},
        {"SSR_HOLDERID", {"HUID", "CN", "SERIAL", "EXPIRDATE"}},
        {"SSR_CONTRACT",
         {"CUID", "VPNAME", "VFNAME", "VCNAME", "PTC", "SERVER", "ALLHOLDERS", "OPPOSITION"}},
        {"SSR_CONTRACTCUR",
         {"CUID", "VPNAME", "VFNAME", "VCNAME", "PROTOCOL", "TYPE", "SERVER", "PROFILE",
          "ALLHOLDERS", "OPPOSITION"}},
        {"SSR_CONTRACTRULE", {"CUID", "HUID1", "HUID2", "ALONE", "AMOUNT", "TLEVEL"}},
        {"HST_SIGNRULES",
         {"ROWNO", "DATETIME", "SERVER", "STATUT", "VPNAME", "TYPE_PTC", "VFNAME", "VCNAME",
          "IDFICVFS", "ORDERID", "SIGNER1", "SIGNER2", "MOTIF", "CNS", "TYPE_CTRL", "TOTAL",
          "MAXORDER", "FILENAME"}},
        {"EVT_JOURNAL",
         {"EVENTID", "EVENTKEY", "DATETIME", "SOURCE", "LEVEL", "REFERENCE", "AUX1", "AUX2", "TEXT",
          "ATTACHKIND", "ATTACHPATH"}},
    };
    return needed;
}

std::vector<std::string> UnreadableColumns(CDatabase& database, const std::string& table)
{
    std::vector<std::string> unreadable;
    for (const NeededTable& needed : NeededTables())
    {
        if (table != needed.name)
        {
            continue;
        }
        std::string all;
        for (const std::string& column : needed.columns)
        {
            all += (all.empty() ? "" : ", ") + column;
        }
        for (const std::string& column :
             CanRead(database, table, all) ? std::vector<std::string>() : needed.columns)
        {
            if (!CanRead(database, table, column))
            {
                unreadable.push_back(column);
            }
        }
    }
    return unreadable;
}

} // namespace schema
