#pragma once

#include "database/odbc_handle.h"
#include "database/row_layout.h"

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace database
{

/// Length of a value that the driver has not given: no length and no mark of ODBC's.
constexpr SQLLEN kNotGiven = std::numeric_limits<SQLLEN>::min();

/// One column of a query and its value in the current row.
struct Column
{
    std::string name;
    std::size_t offset;   // of its buffer among all
    std::size_t capacity; // units of its buffer, terminator included
    SQLLEN indicator = kNotGiven;
    bool isLong = false; // the value stands in longValue, not in the buffer
    std::u16string longValue;
};

/// A statement handle with the memory that one kind of query is read into, columns bound where the
/// driver fills them well. For one query at a time, and then for the next of the same layout.
struct QueryShape
{
    const RowLayout* layout = nullptr; // null: the columns are what the driver told
    std::wstring text;                 // of the query under way
    // Declared before the statement: the driver may write into them until that is freed.
    std::vector<Column> columns;
    std::u16string buffer;
    StatementHandle statement;
};

} // namespace database
