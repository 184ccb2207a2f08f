#include "host/doctor/database_checks.h"

#include "database/cdatabase.h"
#include "database/connection_string.h"
#include "database/dialect.h"
#include "host/order_path.h"
#include "host/text.h"
#include "port/files.h"
#include "port/secrecy.h"
#include "schema/catalogue.h"
#include "support/codepage.h"

namespace doctor
{

namespace
{

constexpr const char* kRightsCheck = "rights";

struct NeededRight
{
    const char* right;
    const char* table;
};

constexpr NeededRight kNeeded[] = {
    {"SELECT", "SSR_VERSION"},   {"SELECT", "SSR_HOLDER"},      {"SELECT", "SSR_HOLDERID"},
    {"SELECT", "SSR_CONTRACT"},  {"SELECT", "SSR_CONTRACTCUR"}, {"SELECT", "SSR_CONTRACTRULE"},
    {"INSERT", "HST_SIGNRULES"}, {"INSERT", "EVT_JOURNAL"},
};

// What batch and watch find out after a kill, and history and events show.
constexpr const char* kReadBack[] = {"HST_SIGNRULES", "EVT_JOURNAL"};

Findings CheckFile(const std::string& path)
{
    const std::string folder = host::FolderOf(path);
    const std::string shown = host::Printable(support::Utf8FromNarrow(path));
    const std::string shownFolder = host::Printable(support::Utf8FromNarrow(folder));
    if (!port::IsWritableFile(path.c_str()))
    {
        return {{kRightsCheck, Outcome::Failed, "the database file cannot be written by this user",
                 "Give it to this user: chown USER " + shown + "."}};
    }
    if (!port::IsWritableFolder(folder.c_str()))
    {
        return {{kRightsCheck, Outcome::Failed,
                 "the folder of the database file cannot be written by this user, and SQLite lays "
                 "the journal of each transaction there",
                 "Give it to this user: chown USER " + shownFolder + "."}};
    }
    Findings findings;
    const port::FileRights file = port::RightsOf(path.c_str());
    const port::FileRights above = port::RightsOf(folder.c_str());
    // Nobody reaches a file in a folder that only its owner may enter.
    const bool isReached = !above.mode.ends_with("00");
    if (isReached && (file.othersMayWrite || file.othersMayRead))
    {
        findings.push_back({kRightsCheck, Outcome::Warning,
                            "the database file has mode " + file.mode + ": others may " +
                                (file.othersMayWrite ? "change" : "read") + " rules and records",
                            "Make it its owner's alone: chmod 600 " + shown + "."});
    }
    if (above.othersMayWrite && !above.isSticky)
    {
        findings.push_back({kRightsCheck, Outcome::Warning,
                            "the folder of the database file has mode " + above.mode +
                                ": others may put another file in its place",
                            "Make it its owner's alone: chmod 700 " + shownFolder + "."});
    }
    if (findings.empty())
    {
        findings.push_back({kRightsCheck, Outcome::Ok,
                            "this user may write the database file and its folder", ""});
    }
    return findings;
}

std::string NotReadBack(const Bank& bank)
{
    std::string tables;
    for (const char* const table : kReadBack)
    {
        if (!schema::HasRight(bank.database, table, "SELECT").value_or(true))
        {
            tables += (tables.empty() ? "" : " and ") + std::string(table);
        }
    }
    return tables.empty()
               ? tables
               : "; not SELECT on " + tables + ", which batch, watch, history and events need";
}

} // namespace

Findings CheckRights(const Bank& bank)
{
    if (bank.database.GetDialect().product == database::Product::Sqlite)
    {
        return CheckFile(database::ConnectionString(bank.where.text).Value("DATABASE"));
    }
    std::string missing;
    std::string grants;
    std::string notThere;
    for (const NeededRight& needed : kNeeded)
    {
        if (schema::ColumnsIn(bank.database, needed.table).empty())
        {
            notThere += (notThere.empty() ? "" : ", ") + std::string(needed.table);
        }
        else if (!schema::HasRight(bank.database, needed.table, needed.right).value_or(true))
        {
            const std::string right = std::string(needed.right) + " ON " + needed.table;
            missing += (missing.empty() ? "" : ", ") + right;
            grants += (grants.empty() ? "GRANT " : "; GRANT ") + right + " TO USER";
        }
    }
    Findings findings;
    if (!missing.empty())
    {
        findings.push_back({kRightsCheck, Outcome::Failed, "this user has not: " + missing,
                            "As the owner of the tables: " + grants + "."});
    }
    if (!notThere.empty())
    {
        findings.push_back(
            {kRightsCheck, Outcome::NotLooked, "on " + notThere + ", which cannot be seen", ""});
    }
    if (findings.empty())
    {
        findings.push_back(
            {kRightsCheck, Outcome::Ok,
             "SELECT on the tables of rules, INSERT into history and journal" + NotReadBack(bank),
             ""});
    }
    return findings;
}

} // namespace doctor
