// What the database's own catalogue tells of the tables, on SQLite and on servers.

#include "schema/catalogue.h"

#include "database/cdatabase.h"
#include "database/dialect.h"
#include "schema/needed_columns.h"
#include "tests/testing/test_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using testing::Contains;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::SizeIs;
using testing::StartsWith;

class SchemaCatalogue : public testing::Test
{
protected:
    SchemaCatalogue()
    {
        m_database.OpenEx(m_tables.ConnexionString().c_str(),
                          CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    }

    testing_support::TestDatabase m_tables;
    CDatabase m_database;
};

TEST_F(SchemaCatalogue, HasEveryColumnThatIsNeeded)
{
    EXPECT_THAT(schema::NeededTables(), SizeIs(8));
    for (const schema::NeededTable& table : schema::NeededTables())
    {
        EXPECT_THAT(schema::ColumnsIn(m_database, table.name), IsSupersetOf(table.columns))
            << table.name;
    }
    EXPECT_THAT(schema::ColumnsIn(m_database, "SSR_NOTHING"), IsEmpty());
}

TEST_F(SchemaCatalogue, HasEveryIndexThatTheScriptsDeclare)
{
    const auto declared = schema::DeclaredIndexes(m_database);
    const auto there = schema::IndexNames(m_database);

    EXPECT_GE(declared.size(), 4U);
    for (const schema::DeclaredIndex& index : declared)
    {
        EXPECT_THAT(there, Contains(index.name));
        EXPECT_THAT(index.table, StartsWith("SSR_"));
        EXPECT_THAT(index.statement, StartsWith("CREATE INDEX "));
        EXPECT_EQ(index.statement.find('\n'), std::string::npos);
    }
}

TEST_F(SchemaCatalogue, TellsTheRightsOfAServersUser)
{
    const bool isSqlite = m_database.GetDialect().product == database::Product::Sqlite;
    for (const char* const right : {"SELECT", "INSERT"})
    {
        const auto has = schema::HasRight(m_database, "HST_SIGNRULES", right);
        EXPECT_EQ(has.has_value(), !isSqlite) << right;
        EXPECT_TRUE(has.value_or(true)) << right;
    }
}

TEST_F(SchemaCatalogue, TellsHowAColumnIsDeclared)
{
    EXPECT_THAT(schema::DeclarationOf(m_database, "SSR_HOLDER", "HUID"),
                StartsWith("VARCHAR(64) NOT NULL"));
    EXPECT_EQ(schema::DeclarationOf(m_database, "SSR_HOLDER", "FNAME"), "VARCHAR(255)");
    EXPECT_EQ(schema::DeclarationOf(m_database, "SSR_CONTRACTRULE", "TLEVEL"), "INTEGER");
    EXPECT_EQ(schema::DeclarationOf(m_database, "SSR_HOLDER", "SERIAL"), "");
}

} // namespace
