#pragma once

#include "tests/fault_driver/fault_driver.h"
#include "tests/fault_driver/real_driver.h"
#include "tests/testing/odbc_texts.h"

#include <sql.h>
#include <sqlext.h>

#include <string>
#include <vector>

// What the driver manager gets as handles. The real driver's are made when the connection string
// has named it.

namespace fault_driver
{

struct EnvironmentHandle
{
    testing_support::Diagnosis diagnosis; ///< of the last call
};

struct ConnectionHandle
{
    struct Attribute
    {
        SQLINTEGER name;
        SQLPOINTER value;
        SQLINTEGER length;
    };

    testing_support::Diagnosis diagnosis; ///< of the last call
    std::size_t number = 0;
    bool dead = false;
    std::vector<Attribute> early; // set before there was a real handle
    const RealDriver* driver = nullptr;
    SQLHENV realEnvironment = nullptr;
    SQLHDBC real = nullptr;
    bool connected = false;
};

struct StatementHandle
{
    testing_support::Diagnosis diagnosis; ///< of the last call
    std::size_t number = 0;
    ConnectionHandle* connection = nullptr;
    SQLHSTMT real = nullptr;
};

} // namespace fault_driver
