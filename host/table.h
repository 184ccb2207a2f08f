#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace host
{

/// Rows in columns for a terminal. Cells are UTF-8 and are shown without control characters; a
/// long cell goes on in the lines below it, cut at blanks where it has some.
class Table
{
public:
    enum class Align
    {
        Left,
        Right,
    };

    /// `widest`: columns that a cell may take before it is wrapped; 0: any number.
    void AddColumn(const std::string& title, Align align = Align::Left, std::size_t widest = 0);
    void AddRow(std::vector<std::string> cells);

    bool IsEmpty() const noexcept { return m_rows.empty(); }

    /// Titles, a ruler and the rows; every line ends with a line feed and has no blanks at its end.
    std::string Text() const;

private:
    struct Column
    {
        std::string title;
        Align align = Align::Left;
        std::size_t widest = 0;
    };

    /// One line of cells, each padded to its width.
    std::string Line(const std::vector<std::string>& cells,
                     const std::vector<std::size_t>& widths) const;
    /// Adds the lines that one row takes.
    void AppendWrapped(const std::vector<std::string>& row,
                       std::vector<std::vector<std::string>>& lines) const;

    std::vector<Column> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};

/// The text in lines of at most `width` columns (at least one letter a line), broken at blanks
/// where possible. Width 0: one line.
std::vector<std::string> Wrapped(const std::string& text, std::size_t width);

} // namespace host
