#include "host/batch/run_set_up.h"

#include "host/output.h"
#include "host/refusal.h"
#include "host/schema_version.h"

namespace batch
{

namespace
{

// Every report needs an identifier of its own, and says which order it answers.
void RefuseOneReportForAll(const host::OptionValues& values)
{
    if (const host::OptionValue* const service = values.Find("psr-service");
        service != nullptr && !service->text.empty())
    {
        throw host::UsageRefusal(
            service->origin +
            " asks for status reports, but with the same terms for every order they would all have "
            "the same identifiers. Give each order its own: --sidecar, or a list in place of the "
            "folder.");
    }
}

} // namespace

RunTerms RunTermsFrom(const host::OptionValues& values, bool isFolder, const std::string& holder)
{
    RunTerms run{values, host::ConnectionFrom(values), values.IsOn("sidecar"), holder};
    if (isFolder && !run.isTermsBeside)
    {
        RefuseOneReportForAll(values);
        host::ReadCheckTerms(values);
    }
    return run;
}

void RequireDatabase(const host::Connection& connection)
{
    CDatabase database;
    host::OpenRulesDatabase(database, connection);
    if (const std::string warning = host::CheckSchemaVersion(database, connection);
        !warning.empty())
    {
        host::Warn(warning);
    }
    HistoryReader(connection).Newest();
}

} // namespace batch
