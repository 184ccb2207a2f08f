// Copies that are there now, found by name.

#include "database/cdatabase.h"
#include "database/dialect.h"
#include "host/refusal.h"
#include "host/rulebook/rule_book_reader.h"
#include "host/scratch/copy.h"
#include "host/scratch/leftovers.h"
#include "port/kernel.h"
#include "tests/host/authority/temporary_files_in.h"
#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <optional>

namespace testing_support
{
namespace
{

using scratch::Leftover;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;

TEST(CopyName, TellsWhenByWhichProcessAndForWhomItWasMade)
{
    const auto parts = scratch::ReadName("signcheck_scratch_20260329_101159_4711_ana_0badcafe");

    ASSERT_TRUE(parts.has_value());
    EXPECT_EQ(parts->made, "2026-03-29 10:11:59");
    EXPECT_EQ(parts->process, 4711U);
    EXPECT_EQ(parts->user, "ana");
}

TEST(CopyName, IsReadBackAsItWasMade)
{
    const ScopedEnvironment user("USER", "Ana-Maria O'Brien of the Bank");
    const std::string name = scratch::NewName();

    const auto parts = scratch::ReadName(name);

    ASSERT_TRUE(parts.has_value()) << name;
    EXPECT_LE(name.size(), 63U);
    EXPECT_EQ(parts->process, static_cast<std::uint32_t>(GetCurrentProcessId()));
    EXPECT_EQ(parts->user, "anamariaobri");
}

TEST(CopyName, OfSomethingElseIsNone)
{
    for (const char* const name :
         {"", "public", "signcheck_scratch_", "signcheck_scratch_of_ana",
          "signcheck_scratch_20260329_101159_4711_ana_0badcafe2",
          "old_signcheck_scratch_20260329_101159_4711_ana_0badcafe",
          "signcheck_scratch_20260329_101159_4711_ana_0badcafe; DROP TABLE SSR_HOLDER"})
    {
        EXPECT_FALSE(scratch::ReadName(name).has_value()) << name;
    }
}

class Leftovers : public SampleBankTest
{
protected:
    Leftovers() : m_where{Db(), "the bank", "option --db"}, m_temporary(m_copies.Path())
    {
        m_source.OpenEx(Db().c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
        m_isSqlite = m_source.GetDialect().product == database::Product::Sqlite;
    }

    /// Those made by this process, since a server may hold others'.
    std::vector<Leftover> Listed()
    {
        auto found =
            m_isSqlite ? scratch::LeftoverFiles() : scratch::LeftoversIn(m_source, m_where);
        found.erase(std::remove_if(found.begin(), found.end(),
                                   [](const Leftover& each) {
                                       return each.parts.process !=
                                              static_cast<std::uint32_t>(GetCurrentProcessId());
                                   }),
                    found.end());
        return found;
    }

    TemporaryFolder m_copies;
    host::Connection m_where;
    TemporaryFilesIn m_temporary;
    CDatabase m_source;
    bool m_isSqlite = true;
};

TEST_F(Leftovers, AreTheCopiesThatAreThere)
{
    EXPECT_THAT(Listed(), IsEmpty());
    {
        const auto book = rulebook::ReadRuleBook(m_source, {"C-7001", std::nullopt});
        const scratch::Copy first(m_source, m_where, book);
        const scratch::Copy second(m_source, m_where, book);

        const auto found = Listed();

        ASSERT_EQ(found.size(), 2U);
        EXPECT_NE(found[0].name, found[1].name);
        for (const Leftover& each : found)
        {
            EXPECT_THAT(each.name, HasSubstr(scratch::kNamePrefix));
            EXPECT_THAT(each.parts.made, MatchesRegex("20..-..-.. ..:..:.."));
        }
    }
    EXPECT_THAT(Listed(), IsEmpty());
}

TEST_F(Leftovers, AreDroppedByTheRemedyThatIsTold)
{
    // As a kill leaves it: nobody drops it.
    const std::string name = scratch::NewName();
    if (m_isSqlite)
    {
        m_copies.Write(name + ".db", "");
        const auto found = Listed();
        ASSERT_EQ(found.size(), 1U);
        EXPECT_EQ(found[0].kind, "SQLite file");
        EXPECT_TRUE(std::filesystem::equivalent(found[0].name, m_copies.Path(name + ".db")));
        EXPECT_EQ(found[0].remedy, "delete the file");
        return;
    }
    const bool isPostgreSql = m_source.GetDialect().product == database::Product::PostgreSql;
    const std::wstring wide(name.begin(), name.end());
    m_source.ExecuteSQLW(((isPostgreSql ? L"CREATE SCHEMA " : L"CREATE DATABASE ") + wide).c_str());
    m_source.ExecuteSQLW((L"CREATE TABLE " + wide + L".SSR_HOLDER (HUID VARCHAR(64))").c_str());

    const auto found = Listed();

    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].name, name);
    EXPECT_EQ(found[0].kind, isPostgreSql ? "PostgreSQL schema" : "MariaDB database");
    EXPECT_THAT(found[0].remedy, StartsWith("DROP "));
    m_source.ExecuteSQLW(std::wstring(found[0].remedy.begin(), found[0].remedy.end()).c_str());
    EXPECT_THAT(Listed(), IsEmpty());
}

TEST_F(Leftovers, AreNoFilesOfOthers)
{
    m_copies.Write("signcheck_scratch_notes.db", "");
    m_copies.Write("signcheck_scratch_20260329_101159_4711_ana_0badcafe.txt", "");
    m_copies.Write("signcheck_scratch_20260329_101159_4711_ana_0badcafe.db", "");

    const auto found = scratch::LeftoverFiles();

    ASSERT_EQ(found.size(), 1U);
    EXPECT_THAT(found[0].name, EndsWith("_4711_ana_0badcafe.db"));
}

TEST_F(Leftovers, InAFolderThatIsNotThereAreRefused)
{
    const TemporaryFilesIn missing(m_copies.Path("missing"));

    EXPECT_THROW(scratch::LeftoverFiles(), host::Refusal);
}

} // namespace
} // namespace testing_support
