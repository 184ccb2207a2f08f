#pragma once

#include <string>
#include <vector>

class CDatabase;

namespace host
{

/// The columns as a SELECT names them, separated by commas, so that the amounts of HST_SIGNRULES
/// among them keep every digit: the driver of SQLite tells a double with 15.
std::string SelectedColumns(CDatabase& database, const std::vector<std::string>& columns);

} // namespace host
