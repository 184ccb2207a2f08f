#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// An ODBC driver for tests that hands every call on to a real driver, counts it and makes a chosen
// one fail. It is loaded by its path, with the real driver's path in a key of its own:
//
//     DRIVER=/path/libsignutils_fault_driver.so;FAULT_DRIVER=/path/libsqlite3odbc.so;Database=…
//
// The test sits in the same process and reaches the one Control through LoadFaultDriver
// (fault_driver_control.h). One thread at a time.

namespace fault_driver
{

/// The calls that a driver manager hands to the driver.
enum class Entry : unsigned
{
    AllocEnvironment,
    AllocConnection,
    AllocStatement,
    FreeEnvironment,
    FreeConnection,
    FreeStatement,
    SetEnvironment,
    SetConnection,
    SetStatement,
    Connect,
    Disconnect,
    EndTransaction,
    GetInfo,
    Execute,
    RowCount,
    MoreResults,
    ResultColumns,
    DescribeColumn,
    BindColumn,
    Fetch,
    GetData,
    CloseStatement,
    Count,
};

constexpr std::uint32_t Bit(Entry entry)
{
    return std::uint32_t{1} << static_cast<unsigned>(entry);
}

constexpr std::uint32_t kEveryEntry = Bit(Entry::Count) - 1;

enum class Kind
{
    Refuse,            ///< the real driver never hears of the call
    DoAndRefuse,       ///< the real driver has done it when the answer is lost
    SucceedWithRemark, ///< done, with a remark of state 01004
    Wait,              ///< done 50 milliseconds later
};

enum class Reach
{
    Once,
    FromThenOn,
    Connection, ///< every later call of the same connection too, as when its server is gone
};

struct Plan
{
    std::uint64_t failing = 0; ///< number of the counted call, from 1; 0 for none
    Kind kind = Kind::Refuse;
    Reach reach = Reach::Once;
    std::string state = "08S01";
    std::uint32_t entries = kEveryEntry; ///< the calls that count
};

struct Call
{
    Entry entry = Entry::Count;
    std::size_t connection = 0; ///< from 1, in the order of their allocation; 0 for none
    std::size_t statement = 0;  ///< from 1; 0 for none
    unsigned attribute = 0;     ///< of the calls that set or ask one
    std::uint64_t number = 0;   ///< among those that count, from 1; 0 for none
    bool faulted = false;
};

struct Statement
{
    std::size_t connection = 0;
    std::string text; ///< UTF-8; empty when it never ran
};

struct Handles
{
    std::size_t allocated = 0;
    std::size_t freed = 0;
};

struct Control
{
    Plan plan;
    std::uint64_t counted = 0; ///< calls so far
    std::uint64_t faults = 0;
    std::vector<Call> calls;
    std::vector<Statement> statements;
    std::size_t connections = 0;
    std::size_t wideTexts = 0; ///< connection strings and statements that came in wide letters
    // By kind.
    Handles environmentHandles;
    Handles connectionHandles;
    Handles statementHandles;
};

} // namespace fault_driver
