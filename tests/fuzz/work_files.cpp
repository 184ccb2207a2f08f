#include "tests/fuzz/work_files.h"

#include "amounts/tdelimitedfile.h"
#include "tests/fuzz/memory_files.h"
#include "tests/fuzz/target.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace fuzz
{

namespace
{

struct Layout
{
    const char* ending;
    std::size_t headerLines;
    std::size_t columns;
};

constexpr Layout kRemittances = {".bp", 4, 4};
constexpr Layout kOrders = {".cp", 4, 18};
constexpr Layout kDetails = {".cp2", 4, 12};
constexpr Layout kTotals = {".tot", 4, 5};
constexpr Layout kErrors = {".err", 1, 5};

bool IsControl(char character)
{
    return static_cast<unsigned char>(character) < 0x20U || character == 0x7F;
}

std::vector<std::string_view> LinesOf(const std::string& path)
{
    std::string_view bytes = FileBytes(path);
    std::vector<std::string_view> lines;
    while (!bytes.empty())
    {
        const std::size_t end = bytes.find("\r\n");
        Require(end != std::string_view::npos, "the last line has no line end: ", path);
        lines.push_back(bytes.substr(0, end));
        Require(std::none_of(lines.back().begin(), lines.back().end(), IsControl),
                "a control character in ", path);
        bytes.remove_prefix(end + 2U);
    }
    return lines;
}

// A row is "field";"field";...: no quote within a field, no backslash at its end.
Row FieldsOf(std::string_view line, const Layout& layout)
{
    Row fields;
    fields.reserve(layout.columns);
    std::size_t at = 0;
    while (fields.empty() || at < line.size())
    {
        if (!fields.empty())
        {
            Require(line[at] == ';', "fields that no semicolon parts: ", line);
            ++at;
        }
        Require(at < line.size() && line[at] == '"', "a field without a quote before it: ", line);
        const std::size_t end = line.find('"', at + 1U);
        Require(end != std::string_view::npos, "a field without a quote behind it: ", line);
        fields.push_back(line.substr(at + 1U, end - at - 1U));
        Require(!fields.back().ends_with('\\'), "a backslash that hides a quote: ", line);
        at = end + 1U;
    }
    Require(fields.size() == layout.columns, "a row of another number of columns: ", line);
    return fields;
}

void CheckHeader(const std::vector<std::string_view>& lines, const Layout& layout)
{
    Require(lines.size() >= layout.headerLines, "header lines are missing");
    Require(lines[0].find('"') == std::string_view::npos, "quotes among the column names");
    if (layout.headerLines > 1)
    {
        FieldsOf(lines[2], layout);
    }
}

// The reader that the analysis uses must see the same rows.
void CompareWithReader(const std::string& path, const Layout& layout, const std::vector<Row>& rows)
{
    TDelimitedFile reader(path.c_str(), layout.headerLines == 1 ? 1 : 0);
    for (const Row& row : rows)
    {
        const amounts::DelimitedRow& current = reader.CurrentRow();
        Require(current.GetCount() == row.size(), "the reader sees other columns in ", path);
        for (std::size_t i = 0; i < row.size(); ++i)
        {
            Require(current.GetAt(i) == row[i], "the reader sees another field in ", path);
        }
        const bool more = reader.NextRow();
        Require(more == (&row != &rows.back()), "the reader sees other rows in ", path);
    }
    Require(!rows.empty() || !reader.HasRow(), "the reader sees a row in ", path);
}

std::vector<Row> RowsOf(const std::string& stem, const Layout& layout)
{
    const std::string path = stem + layout.ending;
    const std::vector<std::string_view> lines = LinesOf(path);
    CheckHeader(lines, layout);
    std::vector<Row> rows;
    for (std::size_t i = layout.headerLines; i < lines.size(); ++i)
    {
        rows.push_back(FieldsOf(lines[i], layout));
    }
    CompareWithReader(path, layout, rows);
    return rows;
}

} // namespace

WorkFiles ReadWorkFiles(const std::string& stem)
{
    return {RowsOf(stem, kRemittances), RowsOf(stem, kOrders), RowsOf(stem, kDetails),
            RowsOf(stem, kTotals),      RowsOf(stem, kErrors), LinesOf(stem)};
}

} // namespace fuzz
