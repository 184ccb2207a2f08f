#include "host/rulebook/book_reading.h"

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/schema_version.h"
#include "host/sentence.h"
#include "host/text.h"
#include "support/codepage.h"

namespace rulebook
{

namespace
{

// Besides, those who keep the rules need not be allowed to read history and journal.
constexpr const char* kRuleTables[][2] = {{"SSR_HOLDER", "HUID"},
                                          {"SSR_HOLDERID", "HUID"},
                                          {"SSR_CONTRACT", "CUID"},
                                          {"SSR_CONTRACTCUR", "CUID"},
                                          {"SSR_CONTRACTRULE", "CUID"}};

} // namespace

void OpenRuleTables(CDatabase& database, const host::Connection& connection)
{
    host::OpenDatabase(database, connection, false);
    for (const auto& [table, column] : kRuleTables)
    {
        host::RequireTable(database, connection, table, column);
    }
    if (const std::string warning = host::CheckSchemaVersion(database, connection);
        !warning.empty())
    {
        host::Warn(warning);
    }
}

RuleBook ReadBook(CDatabase& database, const host::Connection& connection,
                  const ContractFilter& filter)
{
    RuleBook book;
    std::string reason;
    const bool isRead =
        database::GuardDatabase([&] { book = ReadRuleBook(database, filter); },
                                [&reason](const CDBException& raised)
                                { reason = support::Utf8FromNarrow(raised.GetText()); },
                                [&reason] { reason = "unknown error"; });
    if (!isRead)
    {
        throw host::Refusal(host::kCouldNotRun,
                            connection.origin + ": the rules of the database " +
                                host::Quoted(connection.shown) + " cannot be read" +
                                host::BecauseOf(reason) +
                                " Check that the user may read the tables SSR_HOLDER to "
                                "SSR_CONTRACTRULE.");
    }
    return book;
}

} // namespace rulebook
