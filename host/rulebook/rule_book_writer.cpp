#include "host/rulebook/rule_book_writer.h"

#include "database/cdatabase.h"
#include "host/rulebook/statement_text.h"
#include "support/codepage.h"

namespace rulebook
{

namespace
{

/// One row of a table: columns and their values as literals.
class Insertion
{
public:
    Insertion(CDatabase& database, const char* table) : m_database(database), m_table(table) {}

    Insertion& Text(const char* column, const std::optional<std::string>& value)
    {
        return Add(column, Literal(m_database, value));
    }

    Insertion& Number(const char* column, const std::optional<std::int64_t>& value)
    {
        return Add(column, Literal(value));
    }

    Insertion& Key(const ContractKey& key, const char* protocolColumn)
    {
        return Text("VPNAME", key.vpname)
            .Text("VFNAME", key.vfname)
            .Text("VCNAME", key.vcname)
            .Number(protocolColumn, key.protocol)
            .Number("SERVER", key.server);
    }

    void Run()
    {
        const std::string statement =
            "INSERT INTO " + m_table + " (" + m_columns + ") VALUES (" + m_values + ")";
        m_database.ExecuteSQLW(support::WideFromUtf8(statement).c_str());
    }

private:
    Insertion& Add(const char* column, const std::string& literal)
    {
        const char* const separator = m_columns.empty() ? "" : ", ";
        m_columns += separator + std::string(column);
        m_values += separator + literal;
        return *this;
    }

    CDatabase& m_database;
    std::string m_table;
    std::string m_columns;
    std::string m_values;
};

} // namespace

void WriteHolderRow(CDatabase& database, const Holder& holder)
{
    Insertion(database, "SSR_HOLDER")
        .Text("HUID", holder.huid)
        .Text("VPNAME", holder.vpname)
        .Text("FNAME", holder.firstName)
        .Text("LNAME", holder.lastName)
        .Text("OPPOSITION", holder.opposition)
        .Run();
}

void WriteHolder(CDatabase& database, const Holder& holder)
{
    WriteHolderRow(database, holder);
    for (const Certificate& certificate : holder.certificates)
    {
        Insertion(database, "SSR_HOLDERID")
            .Text("HUID", holder.huid)
            .Text("CN", certificate.commonName)
            .Text("SERIAL", certificate.serial)
            .Text("EXPIRDATE", certificate.expires)
            .Run();
    }
}

void WriteContract(CDatabase& database, const Contract& contract)
{
    if (const auto& entry = contract.entry; entry)
    {
        Insertion(database, "SSR_CONTRACT")
            .Text("CUID", contract.cuid)
            .Key(entry->key, "PTC")
            .Number("ALLHOLDERS", entry->allHolders)
            .Text("OPPOSITION", entry->opposition)
            .Run();
    }
    for (const ContractTerms& terms : contract.terms)
    {
        Insertion(database, "SSR_CONTRACTCUR")
            .Text("CUID", contract.cuid)
            .Key(terms.key, "PROTOCOL")
            .Number("TYPE", terms.type)
            .Number("PROFILE", terms.profile)
            .Number("ALLHOLDERS", terms.allHolders)
            .Text("OPPOSITION", terms.opposition)
            .Run();
    }
    for (const Rule& rule : contract.rules)
    {
        Insertion(database, "SSR_CONTRACTRULE")
            .Text("CUID", contract.cuid)
            .Text("HUID1", rule.huid1)
            .Text("HUID2", rule.huid2)
            .Number("ALONE", rule.alone)
            .Text("AMOUNT", rule.amount)
            .Number("TLEVEL", rule.level)
            .Run();
    }
}

void WriteRuleBook(CDatabase& database, const RuleBook& book)
{
    for (const Holder& holder : book.holders)
    {
        WriteHolder(database, holder);
    }
    for (const Contract& contract : book.contracts)
    {
        WriteContract(database, contract);
    }
}

} // namespace rulebook
