#include "host/rulebook/book_update.h"

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "host/refusal.h"
#include "host/rulebook/rule_book_reader.h"
#include "host/rulebook/rule_book_writer.h"
#include "host/rulebook/statement_text.h"
#include "host/sentence.h"
#include "host/text.h"
#include "schema/transaction.h"
#include "support/codepage.h"

#include <stdexcept>

namespace rulebook
{

namespace
{

/// Why an update is given up; a sentence.
class GivenUp : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

void Run(CDatabase& database, const std::string& statement)
{
    database.ExecuteSQLW(support::WideFromUtf8(statement).c_str());
}

void Delete(CDatabase& database, const char* table, const std::string& condition)
{
    Run(database, std::string("DELETE FROM ") + table + " WHERE " + condition);
}

void Write(CDatabase& database, const ItemChange<Holder>& change)
{
    const auto& [before, after] = change;
    const std::string condition =
        "HUID = " + Literal(database, after != nullptr ? after->huid : before->huid);
    Delete(database, "SSR_HOLDER", condition);
    // Certificates that stay as they are keep their places: of two holders who share one, a look-up
    // by certificate takes the names of the last row.
    if (before != nullptr && after != nullptr && before->certificates == after->certificates)
    {
        WriteHolderRow(database, *after);
        return;
    }
    // Certificates that stood there without a holder are none of the new one's.
    Delete(database, "SSR_HOLDERID", condition);
    if (after != nullptr)
    {
        WriteHolder(database, *after);
    }
}

std::string IsEqual(const char* column, const std::string& literal)
{
    return std::string(column) + (literal == "NULL" ? " IS " : " = ") + literal;
}

// A row that awaits its identifier is known by its columns alone.
std::string ConditionOf(CDatabase& database, const ContractTerms& terms)
{
    return "CUID IS NULL AND " + IsEqual("VPNAME", Literal(database, terms.key.vpname)) + " AND " +
           IsEqual("VFNAME", Literal(database, terms.key.vfname)) + " AND " +
           IsEqual("VCNAME", Literal(database, terms.key.vcname)) + " AND " +
           IsEqual("PROTOCOL", std::to_string(terms.key.protocol)) + " AND " +
           IsEqual("SERVER", std::to_string(terms.key.server)) + " AND " +
           IsEqual("TYPE", std::to_string(terms.type)) + " AND " +
           IsEqual("PROFILE", Literal(terms.profile)) + " AND " +
           IsEqual("ALLHOLDERS", Literal(terms.allHolders)) + " AND " +
           IsEqual("OPPOSITION", Literal(database, terms.opposition));
}

void Remove(CDatabase& database, const Contract& contract)
{
    if (!contract.cuid)
    {
        for (const ContractTerms& terms : contract.terms)
        {
            Delete(database, "SSR_CONTRACTCUR", ConditionOf(database, terms));
        }
        return;
    }
    const std::string condition = "CUID = " + Literal(database, *contract.cuid);
    for (const char* const table : {"SSR_CONTRACTRULE", "SSR_CONTRACTCUR", "SSR_CONTRACT"})
    {
        Delete(database, table, condition);
    }
}

void Write(CDatabase& database, const BookChange& change)
{
    for (const auto& [before, after] : change.contracts)
    {
        // The identifier may be there already in tables that no book shows it in.
        if (before != nullptr || after->cuid)
        {
            Remove(database, before != nullptr ? *before : *after);
        }
    }
    for (const auto& holder : change.holders)
    {
        Write(database, holder);
    }
    for (const auto& [before, after] : change.contracts)
    {
        if (after != nullptr)
        {
            WriteContract(database, *after);
        }
    }
}

void Update(CDatabase& database, const RuleBook& before, const BookChange& change,
            bool& isCommitting)
{
    schema::Transaction transaction(database);
    // Two updates at once wait for each other here, on every product.
    Run(database, "UPDATE SSR_VERSION SET NAME = NAME");
    if (!Compare(ReadRuleBook(database), before, true).IsEmpty())
    {
        throw GivenUp("the database was changed by somebody else meanwhile. Look at the difference "
                      "again: signcheck rules diff");
    }
    Write(database, change);
    if (!Compare(ReadRuleBook(database), Changed(before, change), true).IsEmpty())
    {
        throw GivenUp("what was written is not what was read back: the database cut or reordered "
                      "it. Check that its tables are those of signcheck init");
    }
    isCommitting = true;
    transaction.Commit();
}

} // namespace

void UpdateBook(CDatabase& database, const host::Connection& connection, const RuleBook& before,
                const BookChange& change)
{
    const std::string where =
        connection.origin + ": the rules of the database " + host::Quoted(connection.shown);
    std::string reason;
    std::string givenUp;
    bool isCommitting = false;
    const bool isDone = database::GuardDatabase(
        [&]
        {
            try
            {
                Update(database, before, change, isCommitting);
            }
            catch (const GivenUp& why)
            {
                givenUp = why.what();
            }
        },
        [&reason](const CDBException& raised)
        { reason = support::Utf8FromNarrow(raised.GetText()); },
        [&reason] { reason = "unknown error"; });
    if (!givenUp.empty())
    {
        throw host::Refusal(host::kCouldNotRun,
                            where + " were not changed: " + givenUp + ". Nothing was changed.");
    }
    if (!isDone && isCommitting)
    {
        throw host::Refusal(host::kCouldNotRun,
                            where + " may have been changed or not: the database did not confirm" +
                                host::BecauseOf(reason) +
                                " Look at what it holds: signcheck rules diff.");
    }
    if (!isDone)
    {
        throw host::Refusal(host::kCouldNotRun,
                            where + " cannot be written" + host::BecauseOf(reason) +
                                " Nothing was changed. Check that the user may read, insert into "
                                "and delete from the tables SSR_HOLDER to SSR_CONTRACTRULE, and "
                                "update SSR_VERSION.");
    }
}

} // namespace rulebook
