#include "host/rulebook/change_text.h"

#include "host/rulebook/line_diff.h"
#include "host/rulebook/problem.h"
#include "host/rulebook/rule_file_writer.h"
#include "host/table.h"
#include "host/text.h"

#include <nlohmann/json.hpp>

namespace rulebook
{

namespace
{

using Json = nlohmann::ordered_json;

constexpr const char* kFurtherIn = "  ";

std::string NameOf(const Holder& holder)
{
    return holder.huid;
}

std::string NameOf(const Contract& contract)
{
    return contract.cuid.value_or(std::string());
}

std::string WhatIs(const Holder& holder)
{
    return "holder " + host::Printable(holder.huid);
}

std::string WhatIs(const Contract& contract)
{
    return contract.cuid ? "contract " + host::Printable(*contract.cuid)
                         : "contract that awaits its identifier";
}

template <typename Item>
const Item& Either(const ItemChange<Item>& change)
{
    return change.after != nullptr ? *change.after : *change.before;
}

template <typename Item>
const char* KindOf(const ItemChange<Item>& change)
{
    return change.before == nullptr ? "added" : change.after == nullptr ? "removed" : "changed";
}

template <typename Item>
std::vector<LineChange> LinesOf(const ItemChange<Item>& change)
{
    const auto table = [](const Item* item)
    { return item == nullptr ? std::string() : RuleFileTable(*item); };
    std::vector<LineChange> lines = ChangedLines(table(change.before), table(change.after));
    // The line before a table and its heading say no more than the heading of the paragraph.
    std::erase_if(lines, [](const LineChange& line)
                  { return line.text.empty() || line.text.starts_with("[["); });
    return lines;
}

/// How many of one kind come, change and go.
template <typename Item>
struct ChangeCounts
{
    explicit ChangeCounts(const std::vector<ItemChange<Item>>& changes)
    {
        for (const ItemChange<Item>& change : changes)
        {
            ++(change.before == nullptr ? added : change.after == nullptr ? removed : changed);
        }
    }

    std::string Text() const
    {
        return std::to_string(added) + " added, " + std::to_string(changed) + " changed, " +
               std::to_string(removed) + " removed";
    }

    std::size_t added = 0;
    std::size_t changed = 0;
    std::size_t removed = 0;
};

/// The words in lines of at most so many columns, broken behind commas where that is possible.
std::vector<std::string> BrokenAtCommas(const std::string& words, std::size_t width)
{
    std::vector<std::string> lines(1);
    for (std::size_t begin = 0; begin < words.size();)
    {
        const std::size_t comma = words.find(", ", begin);
        const std::size_t end = comma == std::string::npos ? words.size() : comma + 2;
        const std::string field = words.substr(begin, end - begin);
        if (!lines.back().empty() && host::DisplayWidth(lines.back() + field) > width + 1)
        {
            lines.back().pop_back();
            lines.emplace_back();
        }
        lines.back() += field;
        begin = end;
    }
    std::vector<std::string> broken;
    for (const std::string& line : lines)
    {
        const auto parts = host::Wrapped(line, width);
        broken.insert(broken.end(), parts.begin(), parts.end());
    }
    return broken;
}

// A line that is too long for a terminal goes on below, further in and with its sign.
std::string Shown(const LineChange& line)
{
    const std::string sign = std::string("  ") + (line.isAdded ? "+ " : "- ");
    if (host::DisplayWidth(sign + line.text) <= host::kTerminalColumns)
    {
        return sign + line.text + "\n";
    }
    const std::size_t words = line.text.find_first_not_of(' ');
    std::string head = sign + line.text.substr(0, words);
    const std::string further = head + kFurtherIn;
    std::string text;
    for (const std::string& part :
         BrokenAtCommas(line.text.substr(words), host::kTerminalColumns - further.size()))
    {
        text += head + part + "\n";
        head = further;
    }
    return text;
}

template <typename Item>
std::string Paragraphs(const std::vector<ItemChange<Item>>& changes)
{
    std::string text;
    for (const ItemChange<Item>& change : changes)
    {
        text += WhatIs(Either(change)) + " " + KindOf(change) + "\n";
        for (const LineChange& line : LinesOf(change))
        {
            text += Shown(line);
        }
        text += "\n";
    }
    return text;
}

template <typename Item>
Json ListOf(const std::vector<ItemChange<Item>>& changes)
{
    Json list = Json::array();
    for (const ItemChange<Item>& change : changes)
    {
        Json lines = Json::array();
        for (const LineChange& line : LinesOf(change))
        {
            lines.push_back({{"sign", line.isAdded ? "+" : "-"}, {"text", line.text}});
        }
        list.push_back(
            {{"id", NameOf(Either(change))}, {"change", KindOf(change)}, {"lines", lines}});
    }
    return list;
}

} // namespace

std::string AsText(const BookChange& change)
{
    std::string text = Paragraphs(change.holders) + Paragraphs(change.contracts);
    if (change.IsEmpty())
    {
        text += "No difference.\n";
    }
    else
    {
        text += "Holders: " + ChangeCounts<Holder>(change.holders).Text() + ".\n";
        text += "Contracts: " + ChangeCounts<Contract>(change.contracts).Text() + ".\n";
    }
    if (change.otherHolders + change.otherContracts > 0)
    {
        const std::string others = Counted(change.otherHolders, "holder") + " and " +
                                   Counted(change.otherContracts, "contract") +
                                   " of the database are not in the file and stay as they are.";
        for (const std::string& line : host::Wrapped(others, host::kTerminalColumns))
        {
            text += line + "\n";
        }
    }
    return text;
}

Json AsJson(const BookChange& change)
{
    return {{"holders", ListOf(change.holders)},
            {"contracts", ListOf(change.contracts)},
            {"otherHolders", change.otherHolders},
            {"otherContracts", change.otherContracts}};
}

} // namespace rulebook
