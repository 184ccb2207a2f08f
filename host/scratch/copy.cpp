#include "host/scratch/copy.h"

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "host/refusal.h"
#include "host/rulebook/rule_book_writer.h"
#include "host/text.h"
#include "schema/installer.h"
#include "schema/transaction.h"
#include "support/codepage.h"

#include <initializer_list>
#include <optional>

namespace scratch
{

namespace
{

constexpr const char* kDifferences =
    " There, letters beyond ASCII are equal only in the same case (LOWER knows ASCII alone), "
    "trailing blanks count, accents always count, and texts longer than their columns are kept "
    "whole; the database itself may find other holders for such names.";

void Open(CDatabase& database, const host::Connection& where)
{
    database.OpenEx(where.text.c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
}

void Empty(CDatabase& database, std::initializer_list<const wchar_t*> tables)
{
    for (const wchar_t* const table : tables)
    {
        database.ExecuteSQLW((std::wstring(L"DELETE FROM ") + table).c_str());
    }
}

void Write(CDatabase& database, const rulebook::RuleBook& book)
{
    schema::Transaction transaction(database);
    Empty(database, {L"SSR_HOLDER", L"SSR_HOLDERID", L"SSR_CONTRACT", L"SSR_CONTRACTCUR",
                     L"SSR_CONTRACTRULE"});
    rulebook::WriteRuleBook(database, book);
    transaction.Commit();
}

template <typename Work>
void Guarded(const host::Connection& where, Work&& work)
{
    std::optional<std::string> reason;
    database::GuardDatabase(
        [&]
        {
            try
            {
                CDatabase database;
                Open(database, where);
                work(database);
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
        throw host::Refusal(host::kCouldNotRun, "a copy of the rules cannot be written to " +
                                                    host::Quoted(where.shown) + ": " +
                                                    host::Printable(*reason) +
                                                    ". Check the disk and the user's rights.");
    }
}

} // namespace

void RequireEmptyPlace(CDatabase& database, const host::Connection& where)
{
    if (schema::InstalledVersion(database) != 0)
    {
        throw host::Refusal(host::kCouldNotRun,
                            "the connection " + host::Quoted(where.shown) +
                                " does not lead to the empty place made for a copy of the rules, "
                                "but to rules that are in use, which were left alone. Correct the "
                                "connection string: it may choose a database or schema twice.");
    }
}

Copy::Copy(CDatabase& source, const host::Connection& connection, const rulebook::RuleBook& book)
    : m_place(source, connection)
{
    Guarded(m_place.Where(),
            [this, &book](CDatabase& database)
            {
                RequireEmptyPlace(database, m_place.Where());
                schema::Install(database);
                Write(database, book);
            });
}

void Copy::Replace(const rulebook::RuleBook& book)
{
    Guarded(m_place.Where(), [&book](CDatabase& database) { Write(database, book); });
}

void Copy::ForgetChecks()
{
    Guarded(m_place.Where(),
            [](CDatabase& database) {
                Empty(database, {L"HST_SIGNRULES", L"EVT_JOURNAL"});
            });
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
