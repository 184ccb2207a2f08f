#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace fuzz
{

/// The fields of one row: views of the file's bytes, which stay until the files are reset.
using Row = std::vector<std::string_view>;

/// What the six work files of one conversion hold, header lines left out.
struct WorkFiles
{
    std::vector<Row> remittances; ///< ".bp"
    std::vector<Row> orders;      ///< ".cp"
    std::vector<Row> details;     ///< ".cp2"
    std::vector<Row> totals;      ///< ".tot"
    std::vector<Row> errors;      ///< ".err"
    std::vector<std::string_view> mainLines;
};

/// Reads the work files named from `stem`. A finding: a line that does not end with CR LF, a field
/// that is not in quotes or holds what would break its row, a row of another number of columns,
/// rows that the delimited reader reads otherwise.
WorkFiles ReadWorkFiles(const std::string& stem);

/// What must hold in every set of work files, whatever the order file was: amounts with exactly
/// their currency's decimals, remittances and totals that agree with the orders to the last unit,
/// known error numbers. Anything else is a finding.
void CheckWorkFiles(const WorkFiles& files);

} // namespace fuzz
