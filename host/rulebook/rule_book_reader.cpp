#include "host/rulebook/rule_book_reader.h"

#include "database/cdatabase.h"
#include "database/crecordset.h"
#include "host/rulebook/statement_text.h"
#include "support/codepage.h"
#include "support/numbers.h"

#include <map>
#include <set>

namespace rulebook
{

namespace
{

/// Rows of one query with their values as the book holds them.
class Rows
{
public:
    Rows(CDatabase& database, const std::string& statement) : m_rows(database)
    {
        m_rows.OpenW(CRecordset::kForwardOnly, support::WideFromUtf8(statement).c_str(), 0);
    }

    bool IsAtEnd() const { return m_rows.IsEOF(); }
    void MoveNext() { m_rows.MoveNext(); }

    std::string Text(const char* column) const
    {
        TSimpleStringW value;
        m_rows.GetFieldValue(column, value);
        return support::Utf8FromWide(value.SafeGetString());
    }

    std::optional<std::string> OptionalText(const char* column) const
    {
        return m_rows.IsFieldNull(column) ? std::nullopt : std::make_optional(Text(column));
    }

    std::int64_t Number(const char* column) const { return support::ToInt64(Text(column).c_str()); }

    std::optional<std::int64_t> OptionalNumber(const char* column) const
    {
        return m_rows.IsFieldNull(column) ? std::nullopt : std::make_optional(Number(column));
    }

private:
    CRecordset m_rows;
};

template <typename Take>
void ForEachRow(CDatabase& database, const std::string& statement, Take&& take)
{
    for (Rows rows(database, statement); !rows.IsAtEnd(); rows.MoveNext())
    {
        take(rows);
    }
}

ContractKey KeyOf(const Rows& row, const char* protocolColumn)
{
    return {row.Text("VPNAME"), row.Text("VFNAME"), row.Text("VCNAME"), row.Number(protocolColumn),
            row.Number("SERVER")};
}

/// Gathers the rows of all tables under the identifier that they share.
class BookReader
{
public:
    BookReader(CDatabase& database, const ContractFilter& filter)
        : m_database(database), m_filter(filter), m_readsAll(!filter.cuid && !filter.key)
    {
    }

    RuleBook Read()
    {
        ReadTerms();
        ReadEntries();
        ReadRules();
        ReadHolders();
        return std::move(m_book);
    }

private:
    Contract& ContractOf(const std::string& cuid)
    {
        const auto [at, isNew] = m_contracts.emplace(cuid, m_book.contracts.size());
        if (isNew)
        {
            m_book.contracts.emplace_back().cuid = cuid;
        }
        return m_book.contracts[at->second];
    }

    std::string Where(const char* protocolColumn) const
    {
        std::string where;
        const auto add = [&where](const std::string& condition)
        { where += (where.empty() ? " WHERE " : " AND ") + condition; };
        const auto text = [this](const std::string& value) { return Literal(m_database, value); };
        if (m_filter.cuid)
        {
            add("CUID = " + text(*m_filter.cuid));
        }
        if (const auto& key = m_filter.key; key)
        {
            add("VPNAME = " + text(key->vpname));
            add("VFNAME = " + text(key->vfname));
            add("VCNAME = " + text(key->vcname));
            add(std::string(protocolColumn) + " = " + std::to_string(key->protocol));
            add("SERVER = " + std::to_string(key->server));
        }
        return where + InReadingOrder(m_database);
    }

    void ReadTerms()
    {
        ForEachRow(
            m_database,
            "SELECT CUID, VPNAME, VFNAME, VCNAME, PROTOCOL, TYPE, SERVER, PROFILE, "
            "ALLHOLDERS, OPPOSITION FROM SSR_CONTRACTCUR" +
                Where("PROTOCOL"),
            [this](const Rows& row)
            {
                const auto cuid = row.OptionalText("CUID");
                Contract& contract = cuid ? ContractOf(*cuid) : m_book.contracts.emplace_back();
                contract.terms.push_back(
                    {KeyOf(row, "PROTOCOL"), row.Number("TYPE"), row.OptionalNumber("PROFILE"),
                     row.OptionalNumber("ALLHOLDERS"), row.OptionalText("OPPOSITION")});
            });
    }

    void ReadEntries()
    {
        ForEachRow(m_database,
                   "SELECT CUID, VPNAME, VFNAME, VCNAME, PTC, SERVER, ALLHOLDERS, OPPOSITION "
                   "FROM SSR_CONTRACT" +
                       Where("PTC"),
                   [this](const Rows& row)
                   {
                       ContractOf(row.Text("CUID")).entry =
                           ContractEntry{KeyOf(row, "PTC"), row.OptionalNumber("ALLHOLDERS"),
                                         row.OptionalText("OPPOSITION")};
                   });
    }

    void ReadRules()
    {
        if (m_readsAll)
        {
            ReadRulesWhere("");
            return;
        }
        if (m_filter.cuid && !m_filter.key)
        {
            ReadRulesWhere(" WHERE CUID = " + Literal(m_database, *m_filter.cuid));
            return;
        }
        for (const auto& contract : m_contracts)
        {
            ReadRulesWhere(" WHERE CUID = " + Literal(m_database, contract.first));
        }
    }

    void ReadRulesWhere(const std::string& where)
    {
        ForEachRow(m_database,
                   "SELECT CUID, HUID1, HUID2, ALONE, AMOUNT, TLEVEL FROM SSR_CONTRACTRULE" +
                       where + InReadingOrder(m_database),
                   [this](const Rows& row)
                   {
                       ContractOf(row.Text("CUID"))
                           .rules.push_back({row.OptionalText("HUID1"), row.OptionalText("HUID2"),
                                             row.OptionalNumber("ALONE"),
                                             row.OptionalText("AMOUNT"),
                                             row.OptionalNumber("TLEVEL")});
                   });
    }

    // " WHERE HUID IN (…)" of the holders whom the rules name.
    std::string WhereNamed() const
    {
        std::set<std::string> named;
        for (const Contract& contract : m_book.contracts)
        {
            for (const Rule& rule : contract.rules)
            {
                named.insert(rule.huid1.value_or(std::string()));
                named.insert(rule.huid2.value_or(std::string()));
            }
        }
        std::string list;
        for (const std::string& huid : named)
        {
            list += (list.empty() ? "" : ", ") + Literal(m_database, huid);
        }
        return list.empty() ? " WHERE 1=0" : " WHERE HUID IN (" + list + ")";
    }

    // In the order of their certificates: where two holders share one, a look-up by certificate
    // takes the names of the last row.
    void ReadHolders()
    {
        const std::string where = m_readsAll ? "" : WhereNamed();
        std::map<std::string, Holder> holders;
        ForEachRow(m_database,
                   "SELECT HUID, VPNAME, FNAME, LNAME, OPPOSITION FROM SSR_HOLDER" + where,
                   [&holders](const Rows& row)
                   {
                       Holder holder = {row.Text("HUID"),
                                        row.OptionalText("VPNAME"),
                                        row.OptionalText("FNAME"),
                                        row.OptionalText("LNAME"),
                                        row.OptionalText("OPPOSITION"),
                                        {}};
                       holders.emplace(holder.huid, std::move(holder));
                   });
        std::vector<std::string> order;
        ForEachRow(m_database,
                   "SELECT HUID, CN, SERIAL, EXPIRDATE FROM SSR_HOLDERID" + where +
                       InReadingOrder(m_database),
                   [&](const Rows& row)
                   {
                       const auto holder = holders.find(row.Text("HUID"));
                       if (holder == holders.end())
                       {
                           return;
                       }
                       if (holder->second.certificates.empty())
                       {
                           order.push_back(holder->first);
                       }
                       holder->second.certificates.push_back({row.Text("CN"),
                                                              row.OptionalText("SERIAL"),
                                                              row.OptionalText("EXPIRDATE")});
                   });
        for (const std::string& huid : order)
        {
            m_book.holders.push_back(std::move(holders.extract(huid).mapped()));
        }
        for (auto& [huid, holder] : holders)
        {
            m_book.holders.push_back(std::move(holder));
        }
    }

    CDatabase& m_database;
    const ContractFilter& m_filter;
    bool m_readsAll;
    RuleBook m_book;
    std::map<std::string, std::size_t> m_contracts; // places by identifier
};

} // namespace

RuleBook ReadRuleBook(CDatabase& database, const ContractFilter& filter)
{
    return BookReader(database, filter).Read();
}

std::size_t CountStrayCertificates(CDatabase& database)
{
    std::size_t count = 0;
    ForEachRow(database,
               "SELECT COUNT(*) AS STRAY FROM SSR_HOLDERID I WHERE NOT EXISTS "
               "(SELECT 1 FROM SSR_HOLDER H WHERE H.HUID = I.HUID)",
               [&count](const Rows& row)
               { count = static_cast<std::size_t>(row.Number("STRAY")); });
    return count;
}

} // namespace rulebook
