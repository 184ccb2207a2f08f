#pragma once

#include <cstddef>
#include <string_view>

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

/// Where a column stands in a layout, from 0. For constants: an unknown name does not compile.
template <std::size_t Count>
consteval std::size_t PositionOf(const ColumnLayout (&columns)[Count], std::string_view name)
{
    std::size_t position = 0;
    while (columns[position].name != name)
    {
        ++position;
    }
    return position;
}

} // namespace database
