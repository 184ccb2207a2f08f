#include "host/table.h"

#include "host/text.h"

#include <algorithm>
#include <utility>

namespace host
{

namespace
{

constexpr const char* kGap = "  ";

std::string Padded(const std::string& text, std::size_t width, bool right)
{
    const std::size_t taken = DisplayWidth(text);
    const std::string blanks(width > taken ? width - taken : 0, ' ');
    return right ? blanks + text : text + blanks;
}

// Takes from the front of `rest` what fits into one line.
std::string TakeLine(std::u32string& rest, std::size_t width)
{
    std::string line;
    std::size_t used = 0;
    std::size_t count = 0;
    std::size_t lastBlank = std::u32string::npos;
    std::size_t bytesAtBlank = 0;
    while (count < rest.size())
    {
        const std::string letter = Utf8FromCodePoint(rest[count]);
        const std::size_t letterWidth = DisplayWidth(letter);
        if (count > 0 && used + letterWidth > width)
        {
            break;
        }
        if (rest[count] == U' ')
        {
            lastBlank = count;
            bytesAtBlank = line.size();
        }
        line += letter;
        used += letterWidth;
        ++count;
    }
    const bool isCut = count < rest.size();
    if (isCut && rest[count] != U' ' && lastBlank != std::u32string::npos && lastBlank > 0)
    {
        line.resize(bytesAtBlank);
        count = lastBlank;
    }
    rest.erase(0, count);
    rest.erase(0, std::min(rest.find_first_not_of(U' '), rest.size()));
    return line;
}

} // namespace

std::vector<std::string> Wrapped(const std::string& text, std::size_t width)
{
    const std::string shown = Printable(text);
    if (width == 0 || DisplayWidth(shown) <= width)
    {
        return {shown};
    }
    std::vector<std::string> lines;
    std::u32string rest = CodePoints(shown);
    while (!rest.empty())
    {
        lines.push_back(TakeLine(rest, width));
    }
    return lines;
}

void Table::AddColumn(const std::string& title, Align align, std::size_t widest)
{
    m_columns.push_back({title, align, widest});
}

void Table::AddRow(std::vector<std::string> cells)
{
    cells.resize(m_columns.size());
    m_rows.push_back(std::move(cells));
}

std::string Table::Line(const std::vector<std::string>& cells,
                        const std::vector<std::size_t>& widths) const
{
    std::string line;
    for (std::size_t index = 0; index < m_columns.size(); ++index)
    {
        line += index == 0 ? "" : kGap;
        line += Padded(cells[index], widths[index], m_columns[index].align == Align::Right);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    line += '\n';
    return line;
}

std::string Table::Text() const
{
    std::vector<std::string> titles;
    std::vector<std::size_t> widths;
    for (const Column& column : m_columns)
    {
        titles.push_back(column.title);
        widths.push_back(DisplayWidth(column.title));
    }
    std::vector<std::vector<std::string>> lines;
    for (const auto& row : m_rows)
    {
        AppendWrapped(row, lines);
    }
    for (const auto& line : lines)
    {
        for (std::size_t index = 0; index < line.size(); ++index)
        {
            widths[index] = std::max(widths[index], DisplayWidth(line[index]));
        }
    }
    std::vector<std::string> ruler;
    ruler.reserve(widths.size());
    for (const std::size_t width : widths)
    {
        ruler.emplace_back(width, '-');
    }
    lines.insert(lines.begin(), {titles, ruler});

    std::string text;
    for (const auto& line : lines)
    {
        text += Line(line, widths);
    }
    return text;
}

void Table::AppendWrapped(const std::vector<std::string>& row,
                          std::vector<std::vector<std::string>>& lines) const
{
    const std::size_t first = lines.size();
    for (std::size_t index = 0; index < row.size(); ++index)
    {
        const auto parts = Wrapped(row[index], m_columns[index].widest);
        while (lines.size() < first + parts.size())
        {
            lines.emplace_back(m_columns.size());
        }
        for (std::size_t below = 0; below < parts.size(); ++below)
        {
            lines[first + below][index] = parts[below];
        }
    }
}

} // namespace host
