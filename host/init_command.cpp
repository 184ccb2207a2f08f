#include "host/init_command.h"

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "host/connection.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/text.h"
#include "schema/installer.h"
#include "support/codepage.h"

#include <nlohmann/json.hpp>

#include <optional>

namespace host
{

namespace
{

using Json = nlohmann::ordered_json;

/// What one run of init did.
struct Installation
{
    schema::InstallReport tables;
    std::optional<schema::SampleReport> sample;
};

Installation InstallInto(CDatabase& database, const Connection& connection, bool wantsSample)
{
    Installation done;
    std::string reason;
    std::optional<std::string> refused;
    const bool isDone = database::GuardDatabase(
        [&]
        {
            try
            {
                done.tables = schema::Install(database);
                if (wantsSample)
                {
                    done.sample = schema::InstallSample(database);
                }
            }
            catch (const schema::SchemaError& error)
            {
                refused = error.what();
            }
        },
        [&reason](const CDBException& raised)
        { reason = support::Utf8FromNarrow(raised.GetText()); },
        [&reason] { reason = "unknown error"; });
    if (refused)
    {
        throw Refusal(kFindings, connection.origin + ": " + Printable(*refused) +
                                     ". Nothing was changed in " + Quoted(connection.shown) + ".");
    }
    if (!isDone)
    {
        throw Refusal(kCouldNotRun,
                      connection.origin + ": the tables cannot be created in " +
                          Quoted(connection.shown) + ": " + Printable(reason) +
                          ". Check that the user may create tables, and repeat signcheck init.");
    }
    return done;
}

Json AsJson(const Installation& done, const Connection& connection)
{
    Json object;
    object["database"] = connection.shown;
    object["foundVersion"] = done.tables.foundVersion;
    object["version"] = done.tables.version;
    object["createdTables"] = done.tables.createdTables;
    object["takenTables"] = done.tables.takenTables;
    object["sample"] = nullptr;
    if (done.sample)
    {
        object["sample"] = {{"added", done.sample->added},
                            {"alreadyThere", done.sample->alreadyThere}};
    }
    return object;
}

} // namespace

int RunInit(const OptionValues& values)
{
    const Connection connection = ConnectionFrom(values);
    RefuseDatabaseInMemory(connection);
    CDatabase database;
    OpenDatabase(database, connection, true);
    const Installation done = InstallInto(database, connection, values.IsOn("sample"));
    if (values.IsOn("json"))
    {
        PrintJson(AsJson(done, connection));
        return kDone;
    }
    Print("Database " + Printable(connection.shown) + "\n");
    Print(Printable(done.tables.Text()) + "\n");
    if (done.sample)
    {
        Print(Printable(done.sample->Text()) + "\n");
    }
    return kDone;
}

} // namespace host
