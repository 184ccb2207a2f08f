#pragma once

#include <string>
#include <vector>

class CDatabase;

namespace schema
{

/// A table with the columns that the system's statements name.
struct NeededTable
{
    const char* name;
    std::vector<std::string> columns;
};

/// Every table of the first version; later ones have them too.
const std::vector<NeededTable>& NeededTables();

/// The columns of the table that cannot be read and that the system's statements name; none when
/// the table serves them all.
std::vector<std::string> UnreadableColumns(CDatabase& database, const std::string& table);

} // namespace schema
