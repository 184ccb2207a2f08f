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

void AppendLine(std::string& text, std::string line)
{
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + "\n";
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

std::string Table::Text() const
{
    std::vector<std::size_t> widths;
    for (const Column& column : m_columns)
    {
        widths.push_back(DisplayWidth(column.title));
    }
    std::vector<std::vector<std::vector<std::string>>> wrapped;
    for (const auto& row : m_rows)
    {
        auto& cells = wrapped.emplace_back();
        for (std::size_t index = 0; index < row.size(); ++index)
        {
            cells.push_back(Wrapped(row[index], m_columns[index].widest));
            for (const std::string& line : cells.back())
            {
                widths[index] = std::max(widths[index], DisplayWidth(line));
            }
        }
    }

    std::string text;
    std::string titles;
    std::string ruler;
    for (std::size_t index = 0; index < m_columns.size(); ++index)
    {
        const bool right = m_columns[index].align == Align::Right;
        titles += (index == 0 ? "" : kGap) + Padded(m_columns[index].title, widths[index], right);
        ruler += (index == 0 ? "" : kGap) + std::string(widths[index], '-');
    }
    AppendLine(text, titles);
    AppendLine(text, ruler);
    for (const auto& cells : wrapped)
    {
        std::size_t height = 0;
        for (const auto& cell : cells)
        {
            height = std::max(height, cell.size());
        }
        for (std::size_t line = 0; line < height; ++line)
        {
            std::string shown;
            for (std::size_t index = 0; index < cells.size(); ++index)
            {
                const bool right = m_columns[index].align == Align::Right;
                const std::string part = line < cells[index].size() ? cells[index][line] : "";
                shown += (index == 0 ? "" : kGap) + Padded(part, widths[index], right);
            }
            AppendLine(text, shown);
        }
    }
    return text;
}

} // namespace host
