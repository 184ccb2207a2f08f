// What a connection leaves open.

#include "database/idle_pool.h"
#include "tests/database/sqlite_file.h"
#include "tests/testing/failing_allocations.h"
#include "tests/testing/open_descriptors.h"

#include <gtest/gtest.h>

#include <new>

using namespace database_tests;
using testing_support::OpenDescriptors;

namespace
{

/// Whether the connection was opened.
bool TryToOpen(const std::string& connexionString)
{
    CDatabase database;
    try
    {
        return !FailureOf([&] { Open(database, connexionString); });
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
}

TEST(OpenDescriptors, AreClosedWhereverTheOpeningRunsOutOfMemory)
{
    const SqliteFile file;
    ASSERT_TRUE(TryToOpen(file.ConnexionString())) << "loads the driver, which stays";
    database::EmptyIdlePool();
    const std::ptrdiff_t before = OpenDescriptors();
    unsigned long failed = 0;
    bool refused = true;
    for (unsigned long spared = 0; refused; ++spared)
    {
        {
            const testing_support::FailNextAllocation noMemory(spared);
            failed += TryToOpen(file.ConnexionString()) ? 0 : 1;
            refused = noMemory.WasUsed();
        }
        database::EmptyIdlePool();
        ASSERT_EQ(OpenDescriptors(), before) << "after " << spared << " allocations";
    }
    EXPECT_GT(failed, 0U);
}

} // namespace
