#include "host/scratch/copy.h"

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "host/refusal.h"
#include "host/rulebook/rule_book_writer.h"
#include "host/text.h"
#include "schema/installer.h"
#include "schema/transaction.h"
#include "support/codepage.h"

#include <optional>

namespace scratch
{

namespace
{

constexpr const char* kDifferences =
    " There, letters beyond ASCII are equal only in the same case (LOWER knows ASCII alone), "
    "trailing blanks count, accents always count, and texts longer than their columns are kept "
    "whole; the database itself may find other holders for such names.";

void Fill(const host::Connection& where, const rulebook::RuleBook& book)
{
    CDatabase database;
    database.OpenEx(where.text.c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    schema::Install(database);
    schema::Transaction transaction(database);
    rulebook::WriteRuleBook(database, book);
    transaction.Commit();
}

} // namespace

Copy::Copy(CDatabase& source, const host::Connection& connection, const rulebook::RuleBook& book)
    : m_place(source, connection)
{
    std::optional<std::string> reason;
    database::GuardDatabase(
        [&]
        {
            try
            {
                Fill(m_place.Where(), book);
            }
            catch (const schema::SchemaError& error)
            {
                reason = error.what();
            }
        },
        [&reason](const CDBException& raised)
        { reason = support::Utf8FromNarrow(raised.GetText()); },
        [&reason] { reason = "unknown error"; });
    if (reason)
    {
        throw host::Refusal(host::kCouldNotRun,
                            "a copy of the rules cannot be written to " +
                                host::Quoted(m_place.Where().shown) + ": " +
                                host::Printable(*reason) +
                                ". Check the disk and the user's rights, and repeat the command.");
    }
}

std::string Copy::Provenance() const
{
    const std::string sentence = "Decided by the library on a copy of the rules in " +
                                 m_place.Kind() + "; nothing was written to the database.";
    return m_place.Reason().empty() ? sentence
                                    : sentence +
                                          " The copy could not be made in the database "
                                          "itself (" +
                                          m_place.Reason() + ")." + kDifferences;
}

} // namespace scratch
