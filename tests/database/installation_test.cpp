#include "database/cdatabase.h"
#include "database/installed_drivers.h"
#include "database/server_facts.h"
#include "tests/testing/test_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::Contains;
using testing::IsEmpty;
using testing::Not;

TEST(InstalledDrivers, AreThoseOfTheDriverManager)
{
    const auto drivers = database::InstalledDrivers();

    ASSERT_TRUE(drivers.has_value());
    EXPECT_THAT(*drivers, Contains("SQLite3"));
}

TEST(ServerFacts, AreWhatDatabaseAndDriverTell)
{
    const testing_support::TestDatabase tables;
    CDatabase database;
    database.OpenEx(tables.ConnexionString().c_str(),
                    CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);

    const database::ServerFacts facts = database::FactsOf(database);

    EXPECT_THAT(facts.product, Not(IsEmpty()));
    EXPECT_THAT(facts.version, Not(IsEmpty()));
    EXPECT_THAT(facts.driver, Not(IsEmpty()));
    EXPECT_THAT(facts.driverVersion, Not(IsEmpty()));
}

} // namespace
