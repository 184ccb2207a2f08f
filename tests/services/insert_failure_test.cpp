#include "services/insert_failure.h"

#include "database/guard_database.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace
{

using services::Delivery;

constexpr char kFailingKey[] = "01234567-89ab-4cde-8f01-23456789abcd";

struct FailureCase
{
    const char* name;
    const char* state;
    std::int32_t nativeError;
    const char* text;
    Delivery delivery;
    bool lost;
};

class InsertFailure : public testing::TestWithParam<FailureCase>
{
};

TEST_P(InsertFailure, TellsWhatBecomesOfTheEvent)
{
    auto* const raised = new CDBException(-1, GetParam().state, GetParam().nativeError,
                                          GetParam().text, "INSERT INTO EVT_JOURNAL (EVENTKEY)");
    const database::ExceptionOwner owner(raised);
    EXPECT_EQ(services::JudgeFailedInsert(*raised, kFailingKey), GetParam().delivery);
    EXPECT_EQ(services::IsConnectionLost(*raised), GetParam().lost);
}

INSTANTIATE_TEST_SUITE_P(
    Failures, InsertFailure,
    testing::Values(
        FailureCase{"SqliteDuplicate", "HY000", 19,
                    "[SQLite]UNIQUE constraint failed: EVT_JOURNAL.EVENTKEY (19)",
                    Delivery::Delivered, false},
        FailureCase{"PostgreSqlDuplicate", "23505", 1,
                    "ERROR: duplicate key value violates unique constraint "
                    "\"evt_journal_eventkey_key\"",
                    Delivery::Delivered, false},
        FailureCase{"MariaDbDuplicate", "23000", 1062,
                    "Duplicate entry '01234567-89ab-4cde-8f01-23456789abcd' for key 'EVENTKEY'",
                    Delivery::Delivered, false},
        FailureCase{"SqlServerDuplicate", "23000", 2627,
                    "Violation of UNIQUE KEY constraint 'UQ__EVT__1'. The duplicate key value is "
                    "(01234567-89AB-4CDE-8F01-23456789ABCD).",
                    Delivery::Delivered, false},
        // After a restore the numbering may start again; the event is not there.
        FailureCase{"NumberTwiceIsNoDelivery", "23505", 1,
                    "ERROR: duplicate key value violates unique constraint \"evt_journal_pkey\"",
                    Delivery::Refused, false},
        FailureCase{"SqliteOtherConstraint", "HY000", 19, "[SQLite]constraint failed (19)",
                    Delivery::Stopped, false},
        FailureCase{"TextTooLong", "22001", 1, "value too long", Delivery::Refused, false},
        FailureCase{"TableMissing", "42S02", 1, "no such table", Delivery::Stopped, false},
        FailureCase{"NoRight", "42000", 1, "INSERT denied", Delivery::Stopped, false},
        FailureCase{"SqliteBusy", "HY000", 5, "database is locked EVENTKEY", Delivery::Stopped,
                    false},
        FailureCase{"ConnectionGone", "08S01", 0, "server closed the connection", Delivery::Stopped,
                    true},
        FailureCase{"TimeOut", "HYT00", 0, "timeout expired", Delivery::Stopped, true},
        FailureCase{"PostgreSqlEndedIdleSession", "57P05", 1,
                    "FATAL: terminating connection due to idle-session timeout", Delivery::Stopped,
                    true},
        FailureCase{"PostgreSqlAdministratorEndedSession", "57P01", 1,
                    "FATAL: terminating connection due to administrator command", Delivery::Stopped,
                    true},
        FailureCase{"PostgreSqlStatementCancelled", "57014", 1,
                    "ERROR: canceling statement due to user request", Delivery::Stopped, false},
        FailureCase{"MariaDbEndedIdleSession", "HY000", 5014,
                    "Write error: Connection reset by peer (104)", Delivery::Stopped, true},
        FailureCase{"MariaDbReadError", "HY000", 5013, "Read error", Delivery::Stopped, true},
        FailureCase{"MariaDbGoneAway", "HY000", 2006, "Server has gone away", Delivery::Stopped,
                    true},
        FailureCase{"MariaDbLostWithoutState", "HY000", 2013,
                    "Lost connection to server during query", Delivery::Stopped, true},
        FailureCase{"MariaDbLostWithState", "08S01", 2013, "Lost connection to server during query",
                    Delivery::Stopped, true},
        FailureCase{"MariaDbOtherError", "HY000", 1205, "Lock wait timeout exceeded",
                    Delivery::Stopped, false},
        FailureCase{"NumberOfALossWithAnotherState", "42000", 2006, "no right", Delivery::Stopped,
                    false},
        FailureCase{"NoState", "", 0, "", Delivery::Stopped, false}),
    [](const auto& run) { return run.param.name; });

} // namespace
