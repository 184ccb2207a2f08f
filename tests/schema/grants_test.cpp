#include "schema/scripts.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <set>

using testing::ElementsAre;

namespace
{

/// "SELECT SSR_HOLDER" for each table and right that a file gives.
std::set<std::string> RightsIn(const std::string& product)
{
    const std::string bytes =
        testing_support::ReadWholeFile(SIGNUTILS_SCHEMA_FOLDER "/" + product + "/grants.sql");
    static const std::regex grant(R"(GRANT ([A-Z, ]+) ON ([A-Z_,\s]+) TO signutils_host)");
    static const std::regex table(R"([A-Z_]+)");
    std::set<std::string> rights;
    for (const std::wstring& wide : schema::SplitStatements({bytes.begin(), bytes.end()}))
    {
        const std::string statement(wide.begin(), wide.end());
        std::smatch parts;
        if (!std::regex_match(statement, parts, grant))
        {
            ADD_FAILURE() << "no grant: " << statement;
            continue;
        }
        const std::string tables = parts[2];
        for (std::sregex_iterator found(tables.begin(), tables.end(), table), end; found != end;
             ++found)
        {
            rights.insert(parts[1].str() + " " + found->str());
        }
    }
    return rights;
}

} // namespace

TEST(Grants, LetTheHostReadTheRulesAndOnlyInsertWhatItRecords)
{
    for (const char* product : {"postgresql", "mariadb", "sqlserver"})
    {
        SCOPED_TRACE(product);
        EXPECT_THAT(RightsIn(product),
                    ElementsAre("INSERT EVT_JOURNAL", "INSERT HST_SIGNRULES", "SELECT SSR_CONTRACT",
                                "SELECT SSR_CONTRACTCUR", "SELECT SSR_CONTRACTRULE",
                                "SELECT SSR_HOLDER", "SELECT SSR_HOLDERID", "SELECT SSR_VERSION"));
    }
}

TEST(Grants, AreAdviceAloneOnSqliteWhichHasNoUsers)
{
    EXPECT_THAT(RightsIn("sqlite"), ElementsAre());
}
