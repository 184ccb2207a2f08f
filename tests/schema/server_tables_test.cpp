// The tables as a server has made them, compared with what their script declares: names, order,
// types, lengths, collations, numbering, keys and indexes. scripts/check servers names the server.

#include "schema/installer.h"

#include "database/cdatabase.h"
#include "database/dialect.h"
#include "tests/schema/table_definitions.h"
#include "tests/testing/bank.h"
#include "tests/testing/test_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <map>
#include <regex>
#include <string>
#include <utility>
#include <vector>

using schema::Product;
using schema_tests::Column;
using schema_tests::Narrow;
using schema_tests::ReadTables;
using schema_tests::Table;
using testing::ElementsAre;
using testing_support::Bank;
using testing_support::Contract;
using testing_support::Row;
using testing_support::TestDatabase;

namespace
{

std::wstring Upper(std::wstring text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](wchar_t letter) { return static_cast<wchar_t>(std::towupper(letter)); });
    return text;
}

/// What the catalogue of a product calls a type of its scripts, and how it tells the rest.
struct Catalogue
{
    std::map<std::wstring, std::wstring> types;
    const wchar_t* columns; ///< name, type, length, nullable, collation, numbered; of the table %
    const wchar_t* indexes; ///< index, unique, what it is over; of the table %
};

const Catalogue kPostgreSql = {
    {{L"INTEGER", L"integer"},
     {L"BIGINT", L"bigint"},
     {L"VARCHAR", L"character varying"},
     {L"TEXT", L"text"},
     {L"DATE", L"date"},
     {L"TIMESTAMP", L"timestamp without time zone"},
     {L"DOUBLE PRECISION", L"double precision"}},
    L"SELECT column_name, data_type, COALESCE(CAST(character_maximum_length AS VARCHAR), ''), "
    L"is_nullable, COALESCE(collation_name, ''), CASE WHEN is_identity = 'YES' THEN '1' ELSE '' "
    L"END "
    L"FROM information_schema.columns WHERE table_schema = current_schema() AND "
    L"UPPER(table_name) = '%' ORDER BY ordinal_position",
    L"SELECT c.relname, CASE WHEN i.indisunique THEN '1' ELSE '' END, "
    L"string_agg(pg_get_indexdef(i.indexrelid, n, true), ', ' ORDER BY n) FROM pg_index i JOIN "
    L"pg_class c ON c.oid = i.indexrelid JOIN pg_class t ON t.oid = i.indrelid CROSS JOIN LATERAL "
    L"generate_series(1, i.indnatts) n WHERE UPPER(t.relname) = '%' AND t.relnamespace = "
    L"current_schema()::regnamespace GROUP BY c.relname, i.indisunique"};

const Catalogue kMariaDb = {
    {{L"INTEGER", L"int"},
     {L"BIGINT", L"bigint"},
     {L"VARCHAR", L"varchar"},
     {L"LONGTEXT", L"longtext"},
     {L"DATE", L"date"},
     {L"DATETIME", L"datetime"},
     {L"DOUBLE PRECISION", L"double"}},
    L"SELECT COLUMN_NAME, DATA_TYPE, CASE WHEN DATA_TYPE = 'varchar' THEN "
    L"CAST(CHARACTER_MAXIMUM_LENGTH AS CHAR) ELSE '' END, IS_NULLABLE, COALESCE(COLLATION_NAME, "
    L"''), "
    L"CASE WHEN EXTRA = 'auto_increment' THEN '1' ELSE '' END FROM information_schema.COLUMNS "
    L"WHERE TABLE_SCHEMA = DATABASE() AND UPPER(TABLE_NAME) = '%' ORDER BY ORDINAL_POSITION",
    L"SELECT INDEX_NAME, CASE WHEN NON_UNIQUE = 0 THEN '1' ELSE '' END, GROUP_CONCAT(COLUMN_NAME "
    L"ORDER BY SEQ_IN_INDEX SEPARATOR ', ') FROM information_schema.STATISTICS WHERE TABLE_SCHEMA "
    L"= DATABASE() AND UPPER(TABLE_NAME) = '%' GROUP BY INDEX_NAME, NON_UNIQUE"};

/// What an index is over, and "1" where it is unique; by its name.
using Indexes = std::map<std::wstring, std::pair<std::wstring, std::wstring>>;

/// The indexes that a product's scripts create by name.
void AddNamed(Product product, const std::wstring& table, Indexes& indexes)
{
    static const std::wregex head(LR"(CREATE INDEX IF NOT EXISTS (\w+)\s+ON (\w+) \((.*)\)$)");
    for (const schema::Script& script : schema::UpgradeScripts(product))
    {
        for (const std::wstring& statement : schema::SplitStatements(script.text))
        {
            std::wsmatch found;
            if (std::regex_match(statement, found, head) && found[2] == table)
            {
                indexes[found[1]] = {found[3], L""};
            }
        }
    }
}

class ServerTables : public testing::Test
{
protected:
    void SetUp() override
    {
        CDatabase library;
        library.OpenEx(m_database.ConnexionString().c_str(), CDatabase::kNoOdbcDialog);
        m_product = *schema::FindProduct(library.GetDialect().name);
        if (m_product != Product::PostgreSQL && m_product != Product::MariaDB)
        {
            GTEST_SKIP() << "SQLite's tables have tests of their own";
        }
        // As an administrator makes them.
        for (const std::string& table : schema::TableNames())
        {
            m_database.Execute(L"DROP TABLE " + std::wstring(table.begin(), table.end()));
        }
        schema::Install(library);
    }

    const Catalogue& TheCatalogue() const
    {
        return m_product == Product::PostgreSQL ? kPostgreSql : kMariaDb;
    }

    std::vector<Row> Ask(const wchar_t* query, const std::wstring& table)
    {
        return m_database.Query(std::regex_replace(std::wstring(query), std::wregex(L"%"), table));
    }

    /// What the catalogue must say of a column.
    Row Expected(const Table& table, const Column& column) const
    {
        const auto says = [&](const wchar_t* word)
        { return column.rest.find(word) != std::wstring::npos; };
        const bool text = column.type == L"VARCHAR" || column.type == L"LONGTEXT";
        std::wstring collation;
        if (m_product == Product::MariaDB && text)
        {
            const std::size_t at = table.options.find(L"COLLATE ");
            collation = at == std::wstring::npos ? L"" : table.options.substr(at + 8);
        }
        else if (says(L"COLLATE \"C\""))
        {
            collation = L"C";
        }
        const bool nullable = !says(L"NOT NULL") && !says(L"PRIMARY KEY");
        const bool numbered = says(L"IDENTITY") || says(L"AUTO_INCREMENT");
        const auto type = TheCatalogue().types.find(column.type);
        EXPECT_NE(type, TheCatalogue().types.end()) << Narrow(column.type);
        return Row{column.name,
                   type == TheCatalogue().types.end() ? column.type : type->second,
                   text ? column.length : L"",
                   nullable ? L"YES" : L"NO",
                   collation,
                   numbered ? L"1" : L""};
    }

    std::vector<Row> Columns(const std::wstring& table)
    {
        std::vector<Row> columns = Ask(TheCatalogue().columns, table);
        for (Row& column : columns)
        {
            column[0] = Upper(column[0].value_or(L""));
        }
        return columns;
    }

    /// The name that the server gives the index of a key.
    std::wstring NameOfKey(const std::wstring& table, const Column& column, bool primary) const
    {
        if (m_product == Product::MariaDB)
        {
            return primary ? L"PRIMARY" : column.name;
        }
        return primary ? table + L"_PKEY" : table + L"_" + column.name + L"_KEY";
    }

    Indexes ExpectedIndexes(const std::wstring& name, const Table& table) const
    {
        Indexes indexes;
        AddNamed(m_product, name, indexes);
        for (const Column& column : table.columns)
        {
            const bool primary = column.rest.find(L"PRIMARY KEY") != std::wstring::npos;
            if (primary || column.rest.find(L"UNIQUE") != std::wstring::npos)
            {
                indexes[NameOfKey(name, column, primary)] = {column.name, L"1"};
            }
        }
        return indexes;
    }

    Indexes IndexesOf(const std::wstring& table)
    {
        Indexes indexes;
        for (const Row& row : Ask(TheCatalogue().indexes, table))
        {
            // PostgreSQL writes the type that it has given a column of an expression.
            const std::wstring over =
                std::regex_replace(Upper(row[2].value_or(L"")), std::wregex(L"::TEXT"), L"");
            indexes[Upper(row[0].value_or(L""))] = {over, row[1].value_or(L"")};
        }
        return indexes;
    }

    TestDatabase m_database;
    Product m_product = Product::SQLite;
};

constexpr const wchar_t* kLargestNumbersInsert =
    L"INSERT INTO HST_SIGNRULES (DATETIME, STATUT, TYPE_PTC, IDFICVFS) VALUES "
    L"('2024-05-06 07:08:09', '1', 4294967295, 4294967295)";

} // namespace

TEST_F(ServerTables, HaveTheColumnsThatTheirScriptDeclares)
{
    for (const auto& [name, table] : ReadTables(m_product))
    {
        SCOPED_TRACE(Narrow(name));
        std::vector<Row> expected;
        for (const Column& column : table.columns)
        {
            expected.push_back(Expected(table, column));
        }
        EXPECT_EQ(Columns(name), expected);
    }
}

TEST_F(ServerTables, HaveTheKeysAndIndexesThatTheirScriptDeclares)
{
    std::size_t count = 0;
    for (const auto& [name, table] : ReadTables(m_product))
    {
        SCOPED_TRACE(Narrow(name));
        const Indexes expected = ExpectedIndexes(name, table);
        EXPECT_EQ(IndexesOf(name), expected);
        count += expected.size();
    }
    // Six keys; of the others MariaDB has none over LOWER(CN).
    EXPECT_EQ(count, m_product == Product::MariaDB ? 10U : 11U);
}

TEST_F(ServerTables, AreInstalledAgainWithoutAChange)
{
    CDatabase library;
    library.OpenEx(m_database.ConnexionString().c_str(), CDatabase::kNoOdbcDialog);
    const std::vector<Row> before = Columns(L"HST_SIGNRULES");
    const schema::InstallReport again = schema::Install(library);
    EXPECT_EQ(again.Text(), "the schema is up to date, version 1");
    EXPECT_EQ(Columns(L"HST_SIGNRULES"), before);
}

TEST_F(ServerTables, ThatAreMissingAreCreated)
{
    m_database.Execute(L"DROP TABLE HST_SIGNRULES");
    CDatabase library;
    library.OpenEx(m_database.ConnexionString().c_str(), CDatabase::kNoOdbcDialog);
    EXPECT_THAT(schema::Install(library).createdTables, ElementsAre("HST_SIGNRULES"));
    EXPECT_EQ(IndexesOf(L"HST_SIGNRULES").size(), 1U);
}

TEST_F(ServerTables, GiveRulesInTheOrderOfTheirInsertion)
{
    Bank bank(m_database);
    bank.With(Contract(L"Z1").AloneBy(L"H1").UpTo(L"50"));
    for (const wchar_t* const amount : {L"9", L"10", L"1"})
    {
        for (const wchar_t* const contract : {L"A1", L"Z1", L"ZZ"})
        {
            m_database.Execute(L"INSERT INTO SSR_CONTRACTRULE (CUID, HUID1, HUID2, ALONE, AMOUNT, "
                               L"TLEVEL) VALUES ('" +
                               std::wstring(contract) + L"', 'H1', '', 1, '" + amount + L"', 0)");
        }
    }
    EXPECT_THAT(m_database.Query(L"SELECT AMOUNT FROM SSR_CONTRACTRULE WHERE CUID = 'Z1'"),
                ElementsAre(Row{L"50"}, Row{L"9"}, Row{L"10"}, Row{L"1"}));
}

TEST_F(ServerTables, CompareIdentifiersByteForByteAndWithoutPadding)
{
    // Plain literals: PostgreSQL drops the trailing blanks of N'...'.
    for (const wchar_t* const key : {L"h1", L"H1", L"H1 "})
    {
        m_database.Execute(L"INSERT INTO SSR_HOLDER (HUID) VALUES ('" + std::wstring(key) + L"')");
    }
    EXPECT_THAT(m_database.Query(L"SELECT HUID FROM SSR_HOLDER WHERE HUID='H1'"),
                ElementsAre(Row{L"H1"}));
}

TEST_F(ServerTables, NumberHistoryRowsRisingAndNeverAgain)
{
    for (int row = 0; row < 3; ++row)
    {
        m_database.Execute(kLargestNumbersInsert);
    }
    const std::vector<Row> numbers =
        m_database.Query(L"SELECT ROWNO FROM HST_SIGNRULES ORDER BY ROWNO");
    ASSERT_EQ(numbers.size(), 3U);
    m_database.Execute(L"DELETE FROM HST_SIGNRULES");
    m_database.Execute(kLargestNumbersInsert);

    const std::vector<Row> last = m_database.Query(
        L"SELECT ROWNO, TYPE_PTC, IDFICVFS FROM HST_SIGNRULES WHERE ROWNO > " + *numbers[2][0]);
    ASSERT_EQ(last.size(), 1U);
    EXPECT_EQ(last[0][1], std::wstring(L"4294967295"));
    EXPECT_EQ(last[0][2], std::wstring(L"4294967295"));
}

TEST_F(ServerTables, StoreAnEventOfOneKeyOnce)
{
    const auto insert = [](const wchar_t* key)
    {
        return L"INSERT INTO EVT_JOURNAL (EVENTKEY, DATETIME, LEVEL) VALUES ('" +
               std::wstring(key) + L"', '2024-05-06 07:08:09', 0)";
    };
    m_database.Execute(insert(L"K1"));
    EXPECT_NONFATAL_FAILURE(m_database.Execute(insert(L"K1")), "23");
    m_database.Execute(insert(L"k1"));
    EXPECT_EQ(m_database.Query(L"SELECT EVENTKEY FROM EVT_JOURNAL").size(), 2U);
}
