#include "host/listing/table_writer.h"

#include "host/output.h"
#include "host/text.h"

#include <algorithm>

namespace listing
{

namespace
{

constexpr std::size_t kRowsInBlock = 1000;
constexpr const char* kGap = "  ";
constexpr const char* kNoteIndent = "    ";

void AppendLinesBelow(const TableRow& row, std::string& text)
{
    const std::string indent = kNoteIndent;
    for (const std::string& note : row.notes)
    {
        for (const std::string& line : host::Wrapped(note, host::kTerminalColumns - indent.size()))
        {
            text += line.empty() ? line : indent + line + "\n";
        }
    }
    for (const std::string& line : row.below)
    {
        text += host::Printable(line) + "\n";
    }
}

} // namespace

TableWriter::TableWriter(const Shape& shape) : m_shape(shape)
{
    for (const auto& [title, align] : shape.columns)
    {
        m_widths.push_back(host::DisplayWidth(title));
    }
}

void TableWriter::Add(const Record& record)
{
    TableRow row = record.shown();
    for (std::string& cell : row.cells)
    {
        cell = host::Printable(cell);
    }
    m_block.push_back(std::move(row));
    if (m_block.size() == kRowsInBlock)
    {
        PrintBlock();
    }
}

void TableWriter::Widen(const std::vector<std::string>& cells)
{
    for (std::size_t index = 0; index < m_widths.size(); ++index)
    {
        m_widths[index] = std::max(m_widths[index], host::DisplayWidth(cells[index]));
    }
}

std::string TableWriter::Line(const std::vector<std::string>& cells) const
{
    std::string line;
    for (std::size_t index = 0; index < m_widths.size(); ++index)
    {
        const std::string blanks(m_widths[index] - host::DisplayWidth(cells[index]), ' ');
        const bool isRight = m_shape.columns[index].second == host::Table::Align::Right;
        line += index == 0 ? "" : kGap;
        line += isRight ? blanks + cells[index] : cells[index] + blanks;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
}

void TableWriter::PrintBlock()
{
    for (const TableRow& row : m_block)
    {
        Widen(row.cells);
    }
    std::string text;
    if (!m_hasBegun)
    {
        std::vector<std::string> titles;
        std::vector<std::string> rulers;
        for (std::size_t index = 0; index < m_widths.size(); ++index)
        {
            titles.push_back(m_shape.columns[index].first);
            rulers.emplace_back(m_widths[index], '-');
        }
        text = Line(titles) + Line(rulers);
    }
    for (const TableRow& row : m_block)
    {
        text += Line(row.cells);
        AppendLinesBelow(row, text);
    }
    host::Print(text);
    m_hasBegun = true;
    m_block.clear();
}

void TableWriter::Finish(const std::string& nextPage)
{
    if (!m_block.empty())
    {
        PrintBlock();
    }
    if (!m_hasBegun)
    {
        host::Print(m_shape.whenEmpty + "\n");
    }
    if (!nextPage.empty())
    {
        host::Print("There are more. The next page: " + nextPage + "\n");
    }
}

void TableWriter::Fail(const std::string&, int)
{
    if (!m_block.empty())
    {
        PrintBlock();
    }
}

} // namespace listing
