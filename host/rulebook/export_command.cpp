#include "host/rulebook/export_command.h"

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "host/exit_status.h"
#include "host/option_readers.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/rulebook/book_reading.h"
#include "host/rulebook/rule_file_writer.h"
#include "host/text.h"

namespace rulebook
{

namespace
{

void WarnOfStrayCertificates(CDatabase& database)
{
    std::size_t count = 0;
    database::GuardDatabase([&] { count = CountStrayCertificates(database); },
                            [](const CDBException&) {}, [] {});
    if (count > 0)
    {
        host::Warn(std::to_string(count) +
                   " rows of SSR_HOLDERID belong to no holder and are not exported: no check finds "
                   "them. Add their holders, or delete the rows.");
    }
}

} // namespace

int RunExport(const host::OptionValues& values)
{
    const host::Connection connection = host::ConnectionFrom(values);
    ContractFilter filter;
    const host::OptionValue* const cuid = values.Find("contract");
    if (cuid != nullptr)
    {
        host::RefuseUnreadable(*cuid);
        filter.cuid = cuid->text;
    }
    CDatabase database;
    OpenRuleTables(database, connection);
    const RuleBook book = ReadBook(database, connection, filter);
    if (cuid != nullptr && book.contracts.empty())
    {
        throw host::Refusal(host::kFindings, cuid->origin + ": the database has no contract " +
                                                 host::Quoted(cuid->text) +
                                                 ". Give its identifier (CUID) as signcheck rules "
                                                 "export shows it without --contract.");
    }
    host::Print(RuleFileOpening());
    for (const Holder& holder : book.holders)
    {
        host::Print(RuleFileTable(holder));
    }
    for (const Contract& contract : book.contracts)
    {
        host::Print(RuleFileTable(contract));
    }
    if (cuid == nullptr)
    {
        WarnOfStrayCertificates(database);
    }
    return host::kDone;
}

} // namespace rulebook
