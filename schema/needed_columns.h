#pragma once

#include <string>
#include <vector>

class CDatabase;

namespace schema
{

/// The columns of the table that cannot be read and that the system's statements name; none when
/// the table serves them all.
std::vector<std::string> UnreadableColumns(CDatabase& database, const std::string& table);

} // namespace schema
