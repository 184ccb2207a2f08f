#include "services/event_key.h"
#include "services/event_spool.h"
#include "tests/testing/failing_allocations.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

namespace
{

using services::EventRecord;
using services::EventSpool;
using testing_support::FailNextAllocation;
using testing_support::TemporaryFolder;

TEST(SpoolWithoutMemory, EventThatIsNotReportedAsKeptIsNotThere)
{
    EventRecord event;
    event.key = services::MakeEventKey();
    event.dateTime = "2026-03-29 14:05:09";
    event.text = L"an event";
    bool used = true;
    for (unsigned long spared = 0; used; ++spared)
    {
        const TemporaryFolder folder;
        const EventSpool spool(folder.Path("spool"), "Driver=SQLite3;Database=/bank/rules.db");
        bool kept = false;
        try
        {
            const FailNextAllocation failure(spared);
            kept = spool.Append(event);
            used = failure.WasUsed();
        }
        catch (const std::bad_alloc&)
        {
            EXPECT_FALSE(kept);
        }
        EXPECT_EQ(spool.HoldsEvents(), kept) << spared;
        EXPECT_NE(kept, used) << spared;
    }
}

} // namespace
