#pragma once

#include <cstddef>

namespace database
{

enum class ColumnKind
{
    Narrow, ///< read as Windows-1252 text in the end; identifiers, numbers
    Wide,   ///< Unicode text
};

/// One column of a query: its name and its length in characters, as schema/ has it.
struct ColumnLayout
{
    const char* name;
    ColumnKind kind;
    std::size_t length;
};

/// The columns of one query shape, in the order of the statement. A record set opened with a
/// layout binds by it and asks the driver nothing about its columns.
struct RowLayout
{
    const ColumnLayout* columns;
    std::size_t count;
};

} // namespace database
