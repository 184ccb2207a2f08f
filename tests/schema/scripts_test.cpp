#include "schema/scripts.h"

#include "tests/schema/table_definitions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using schema::FindProduct;
using schema::Product;
using schema::SplitStatements;
using schema_tests::Column;
using schema_tests::kProducts;
using schema_tests::Narrow;
using schema_tests::ReadTables;
using schema_tests::Table;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

struct DeclaredLength
{
    const wchar_t* table;
    const wchar_t* column;
    const wchar_t* length;
};

constexpr DeclaredLength kLengths[] = {
    {L"SSR_HOLDER", L"HUID", L"64"},         {L"SSR_HOLDER", L"VPNAME", L"8"},
    {L"SSR_HOLDER", L"FNAME", L"255"},       {L"SSR_HOLDER", L"LNAME", L"255"},
    {L"SSR_HOLDERID", L"HUID", L"64"},       {L"SSR_HOLDERID", L"CN", L"255"},
    {L"SSR_CONTRACT", L"CUID", L"64"},       {L"SSR_CONTRACT", L"VPNAME", L"8"},
    {L"SSR_CONTRACT", L"VFNAME", L"8"},      {L"SSR_CONTRACT", L"VCNAME", L"8"},
    {L"SSR_CONTRACTCUR", L"CUID", L"64"},    {L"SSR_CONTRACTCUR", L"VPNAME", L"8"},
    {L"SSR_CONTRACTCUR", L"VFNAME", L"8"},   {L"SSR_CONTRACTCUR", L"VCNAME", L"8"},
    {L"SSR_CONTRACTRULE", L"CUID", L"64"},   {L"SSR_CONTRACTRULE", L"HUID1", L"64"},
    {L"SSR_CONTRACTRULE", L"HUID2", L"64"},  {L"SSR_CONTRACTRULE", L"AMOUNT", L"32"},
    {L"HST_SIGNRULES", L"VPNAME", L"8"},     {L"HST_SIGNRULES", L"VFNAME", L"8"},
    {L"HST_SIGNRULES", L"VCNAME", L"8"},     {L"HST_SIGNRULES", L"ORDERID", L"10"},
    {L"HST_SIGNRULES", L"SIGNER1", L"511"},  {L"HST_SIGNRULES", L"SIGNER2", L"511"},
    {L"HST_SIGNRULES", L"MOTIF", L"1024"},   {L"HST_SIGNRULES", L"CNS", L"2048"},
    {L"HST_SIGNRULES", L"FILENAME", L"256"}, {L"EVT_JOURNAL", L"EVENTKEY", L"36"},
    {L"EVT_JOURNAL", L"ATTACHPATH", L"260"}, {L"EVT_JOURNAL", L"ATTACHKIND", L"10"},
};

constexpr const wchar_t* kIdentifiers[] = {L"HUID",   L"CUID",   L"HUID1",  L"HUID2",
                                           L"VPNAME", L"VFNAME", L"VCNAME", L"EVENTKEY"};

bool IsIdentifier(const Column& column)
{
    for (const wchar_t* name : kIdentifiers)
    {
        if (column.name == name)
        {
            return true;
        }
    }
    return false;
}

/// Where a product declares that the texts of a column compare byte for byte.
std::wstring CollationOf(Product product, const Table& table, const Column& column)
{
    return product == Product::MariaDB ? table.options : column.rest;
}

std::wstring BinaryCollation(Product product)
{
    switch (product)
    {
    case Product::SQLite:
        return L"COLLATE BINARY";
    case Product::PostgreSQL:
        return L"COLLATE \"C\"";
    case Product::MariaDB:
        return L"COLLATE utf8mb4_nopad_bin";
    case Product::SqlServer:
        return L"COLLATE Latin1_General_100_BIN2";
    }
    return L"";
}

} // namespace

TEST(SplitStatements, EndsAStatementAtASemicolonAtTheEndOfALine)
{
    EXPECT_THAT(SplitStatements(L"CREATE TABLE A (\n  B TEXT\n);\n\nINSERT INTO A VALUES ('x;y');"),
                ElementsAre(L"CREATE TABLE A (\n  B TEXT\n)", L"INSERT INTO A VALUES ('x;y')"));
}

TEST(SplitStatements, LeavesOutCommentLinesAndCarriageReturns)
{
    EXPECT_THAT(SplitStatements(L"-- told;\r\n  -- and told\r\nSELECT 1\r\nFROM A; \r\n"),
                ElementsAre(L"SELECT 1\nFROM A"));
}

TEST(SplitStatements, TakesALastStatementWithoutSemicolon)
{
    EXPECT_THAT(SplitStatements(L"SELECT 1;\nSELECT 2\n"), ElementsAre(L"SELECT 1", L"SELECT 2"));
}

TEST(SplitStatements, FindsNoneInCommentsAlone)
{
    EXPECT_THAT(SplitStatements(L"\n-- nothing\n\n"), IsEmpty());
}

TEST(FindProduct, KnowsTheNamesThatDriversReport)
{
    EXPECT_EQ(FindProduct("SQLite"), Product::SQLite);
    EXPECT_EQ(FindProduct("PostgreSQL"), Product::PostgreSQL);
    EXPECT_EQ(FindProduct("MariaDB"), Product::MariaDB);
    EXPECT_EQ(FindProduct("MySQL"), Product::MariaDB);
    EXPECT_EQ(FindProduct("Microsoft SQL Server"), Product::SqlServer);
    EXPECT_EQ(FindProduct("Oracle"), std::nullopt);
    EXPECT_EQ(FindProduct(""), std::nullopt);
}

TEST(UpgradeScripts, AreNumberedByTheirFileNamesWithoutAGap)
{
    for (const Product product : kProducts)
    {
        const auto scripts = schema::UpgradeScripts(product);
        ASSERT_FALSE(scripts.empty());
        for (std::size_t index = 0; index < scripts.size(); ++index)
        {
            EXPECT_EQ(scripts[index].number, static_cast<int>(index) + 1);
            EXPECT_EQ(std::stoi(scripts[index].name.substr(0, 4)), scripts[index].number);
        }
    }
}

TEST(UpgradeScripts, AreTheSameStepsOnEveryProduct)
{
    const auto reference = schema::UpgradeScripts(Product::SQLite);
    for (const Product product : kProducts)
    {
        const auto scripts = schema::UpgradeScripts(product);
        ASSERT_EQ(scripts.size(), reference.size());
        for (std::size_t index = 0; index < scripts.size(); ++index)
        {
            EXPECT_EQ(scripts[index].name, reference[index].name);
        }
    }
}

TEST(UpgradeScripts, DropNothing)
{
    for (const Product product : kProducts)
    {
        for (const schema::Script& script : schema::UpgradeScripts(product))
        {
            for (const std::wstring& statement : SplitStatements(script.text))
            {
                EXPECT_EQ(statement.find(L"DROP"), std::wstring::npos) << Narrow(statement);
                EXPECT_EQ(statement.find(L"DELETE"), std::wstring::npos) << Narrow(statement);
            }
        }
    }
}

TEST(TableDefinitions, AreTheSameTablesAndColumnsOnEveryProduct)
{
    const auto reference = ReadTables(Product::SQLite);
    ASSERT_EQ(reference.size(), schema::TableNames().size());
    for (const std::string& name : schema::TableNames())
    {
        EXPECT_EQ(reference.count(std::wstring(name.begin(), name.end())), 1U) << name;
    }
    for (const Product product : kProducts)
    {
        const auto tables = ReadTables(product);
        ASSERT_EQ(tables.size(), reference.size());
        for (const auto& [name, table] : reference)
        {
            ASSERT_EQ(tables.count(name), 1U) << Narrow(name);
            EXPECT_EQ(tables.at(name).ColumnNames(), table.ColumnNames()) << Narrow(name);
        }
    }
}

TEST(TableDefinitions, HaveTheAgreedLengthsOnEveryProduct)
{
    for (const Product product : kProducts)
    {
        const auto tables = ReadTables(product);
        for (const DeclaredLength& expected : kLengths)
        {
            const Column* column = tables.at(expected.table).Find(expected.column);
            ASSERT_NE(column, nullptr) << Narrow(expected.column);
            EXPECT_EQ(column->length, expected.length) << Narrow(expected.column);
            EXPECT_THAT(Narrow(column->type), HasSubstr("VARCHAR"));
        }
    }
}

TEST(TableDefinitions, CompareIdentifiersByteForByteOnEveryProduct)
{
    for (const Product product : kProducts)
    {
        int identifiers = 0;
        for (const auto& [name, table] : ReadTables(product))
        {
            for (const Column& column : table.columns)
            {
                if (!IsIdentifier(column))
                {
                    continue;
                }
                ++identifiers;
                EXPECT_THAT(Narrow(CollationOf(product, table, column)),
                            HasSubstr(Narrow(BinaryCollation(product))))
                    << Narrow(name + L"." + column.name);
            }
        }
        EXPECT_EQ(identifiers, 18);
    }
}

TEST(TableDefinitions, KeepTheDatabasesOwnCollationForCertificateNamesOnPostgreSql)
{
    const auto tables = ReadTables(Product::PostgreSQL);
    EXPECT_EQ(tables.at(L"SSR_HOLDERID").Find(L"CN")->rest, L"NOT NULL");
}
