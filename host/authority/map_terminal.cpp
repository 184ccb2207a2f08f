#include "host/authority/map_text.h"

#include "host/table.h"
#include "host/text.h"

#include <algorithm>

namespace authority
{

namespace
{

constexpr std::size_t kSignersWidth = 36;
// With the signers, the mode and gaps of two between, as many columns of two as 80 take.
constexpr std::size_t kBandsOnATerminal = 9;

// A, B, … Z, AA, AB, …
std::string Letters(std::size_t number)
{
    const std::string last(1, static_cast<char>('A' + number % 26));
    return number < 26 ? last : Letters(number / 26 - 1) + last;
}

const char* Mark(const Verdict& verdict)
{
    switch (verdict.number)
    {
    case scratch::kAccepted:
        return "ok";
    case scratch::kRefused:
        return "NO";
    default:
        return "-";
    }
}

void AppendWrapped(std::string& text, const std::string& head, const std::string& words)
{
    const std::string indent(host::DisplayWidth(head), ' ');
    bool isFirst = true;
    for (const std::string& line : host::Wrapped(words, host::kTerminalColumns - indent.size()))
    {
        text += (isFirst ? head : indent) + line + "\n";
        isFirst = false;
    }
}

std::string Legend(const AuthorityMap& map)
{
    std::string text;
    std::size_t width = 0;
    for (std::size_t cell = 0; cell < map.cells.size(); ++cell)
    {
        width = std::max(width, Letters(cell).size());
    }
    for (std::size_t cell = 0; cell < map.cells.size(); ++cell)
    {
        const std::string letters = Letters(cell);
        AppendWrapped(text, "  " + letters + std::string(width - letters.size() + 2, ' '),
                      InWords(map.cells[cell]));
    }
    return text;
}

void AddLine(host::Table& table, const std::string& label, const char* mode, const Line& line,
             std::size_t first, std::size_t count)
{
    std::vector<std::string> cells = {label, mode};
    for (std::size_t cell = first; cell < first + count; ++cell)
    {
        cells.emplace_back(Mark(line[cell]));
    }
    table.AddRow(std::move(cells));
}

bool HasEqualVerdicts(const Row& row)
{
    return std::equal(row.direct.begin(), row.direct.end(), row.distributed.begin(),
                      [](const Verdict& left, const Verdict& right)
                      { return left.number == right.number; });
}

std::string TableOf(const AuthorityMap& map, std::size_t first, std::size_t count)
{
    host::Table table;
    table.AddColumn("SIGNERS", host::Table::Align::Left, kSignersWidth);
    table.AddColumn("VEU");
    for (std::size_t cell = first; cell < first + count; ++cell)
    {
        table.AddColumn(Letters(cell));
    }
    for (const Row& row : map.rows)
    {
        if (IsWithoutRule(row))
        {
            continue;
        }
        if (HasEqualVerdicts(row))
        {
            AddLine(table, row.label, "any", row.direct, first, count);
            continue;
        }
        AddLine(table, row.label, "off", row.direct, first, count);
        AddLine(table, "", "on", row.distributed, first, count);
    }
    return table.Text();
}

std::string MapAsText(const AuthorityMap& exact)
{
    const AuthorityMap map = WithoutEqualNeighbours(exact);
    const auto shown = std::count_if(map.rows.begin(), map.rows.end(),
                                     [](const Row& row) { return !IsWithoutRule(row); });
    std::string text;
    AppendWrapped(text, "", TypeInWords(map) + ": " + KeyInWords(map.kind.contract));
    text += "\n";
    if (shown == 0)
    {
        AppendWrapped(text, "  ", kNothingAccepted);
        return text + "\n";
    }
    text += Legend(map) + "\n";
    for (std::size_t first = 0; first < map.cells.size(); first += kBandsOnATerminal)
    {
        text += TableOf(map, first, std::min(kBandsOnATerminal, map.cells.size() - first)) + "\n";
    }
    if (static_cast<std::size_t>(shown) < map.rows.size())
    {
        AppendWrapped(text, "", kOthersWithoutRule);
    }
    AppendWrapped(text, "", LargerSets(map));
    return text + "\n";
}

} // namespace

std::string AsText(const ContractMaps& maps)
{
    std::string text;
    AppendWrapped(text, "Contract  ", maps.cuid);
    AppendWrapped(text, "Shows     ",
                  "who may release what: ok accepted, NO refused, - no rule. VEU off: an order "
                  "comes with all its signatures; on: they arrive one by one, and ok means that "
                  "nothing speaks against those that are there.");
    AppendWrapped(text, "Exact     ",
                  maps.provenance + " " + std::to_string(maps.judged) + " orders were judged.");
    for (const std::string& note : maps.notes)
    {
        AppendWrapped(text, "Note      ", note);
    }
    text += "\n";
    for (const AuthorityMap& map : maps.maps)
    {
        text += MapAsText(map);
    }
    text.erase(text.find_last_not_of('\n') + 2);
    return text;
}

} // namespace authority
