#pragma once

#include "amounts/tveufile.h"
#include "host/display_profile.h"

#include <string>
#include <vector>

namespace host
{

/// What the counts say of the remittance that a row belongs to; Windows-1252. Empty for orders.
struct RowTotals
{
    std::string total;
    std::string currency;
    std::string orders;
};

/// The value of a column as a loader resolved it: of a work file's column, or the number of orders
/// or total and currency of the remittance; empty for everything else. Windows-1252.
std::string ColumnValue(int column, const amounts::DelimitedRow& row, const RowTotals& totals);

/// The values of several columns, joined by blanks; empty ones are passed over.
std::string JoinedValue(const TArray<int>& columns, const amounts::DelimitedRow& row);

/// What a display section shows of each row of one work file. Texts are Windows-1252.
class DisplayColumns
{
public:
    struct Column
    {
        std::string code; ///< names of the work file's columns
        std::string label;
    };

    /// Loads the section into the reader, which must outlive this. Raises a "could not run" Refusal
    /// that names profile file, section and key when it shows nothing, a column that is not there,
    /// or one without a label.
    DisplayColumns(TVeuFile& file, const std::string& section, const std::string& profilePath);

    const std::string& Title() const noexcept { return m_title; }
    /// How many columns stand in one line; at least one.
    std::size_t InOneLine() const noexcept { return m_inOneLine; }
    const std::vector<Column>& Columns() const noexcept { return m_columns; }

    /// A value for each column.
    std::vector<std::string> Values(const amounts::DelimitedRow& row,
                                    const RowTotals& totals) const;

private:
    std::string CodeOf(const displayItem& item) const;

    const TVeuFile& m_file;
    std::string m_title;
    std::size_t m_inOneLine = 1;
    std::vector<Column> m_columns;
};

} // namespace host
