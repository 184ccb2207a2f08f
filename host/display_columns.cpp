#include "host/display_columns.h"

#include "host/refusal.h"
#include "host/text.h"
#include "support/format.h"
#include "support/oem.h"

#include <algorithm>

namespace host
{

namespace
{

bool IsShown(const displayItem& item)
{
    return item.columns.GetCount() > 0 || item.column == amounts::kOrderCount ||
           item.column == amounts::kTotalCurrency || item.column == amounts::kNoColumn;
}

std::string KeyOf(const char* format, int number)
{
    return support::FormatA(format, number);
}

// The readers have told on standard error what they could not find, without a line feed behind it.
[[noreturn]] void Refuse(const std::string& section, const std::string& profilePath,
                         const std::string& problem)
{
    printfCharToOem("\n");
    throw Refusal(kCouldNotRun, "order display: " + Quoted(profilePath) + ", section [" + section +
                                    "]: " + problem);
}

} // namespace

std::string ColumnValue(int column, const amounts::DelimitedRow& row, const RowTotals& totals)
{
    switch (column)
    {
    case amounts::kOrderCount:
        return totals.orders;
    case amounts::kTotalCurrency:
        return totals.total + (totals.currency.empty() ? "" : " ") + totals.currency;
    default:
        // The other codes lie beyond every row.
        return column < 0 ? std::string()
                          : std::string(row.GetAt(static_cast<std::size_t>(column)));
    }
}

std::string JoinedValue(const TArray<int>& columns, const amounts::DelimitedRow& row)
{
    std::string joined;
    for (int i = 0; i < columns.GetCount(); ++i)
    {
        const std::string value = ColumnValue(*columns.GetAt(i), row, {});
        joined += (joined.empty() || value.empty() ? "" : " ") + value;
    }
    return joined;
}

DisplayColumns::DisplayColumns(TVeuFile& file, const std::string& section,
                               const std::string& profilePath)
    : m_file(file)
{
    file.LoadDisplaySection(section.c_str());
    m_title = file.GetDisplayHeader().SafeGetString();
    const TArray<displayItem*>& items = file.GetDisplayItems();
    for (int i = 0; i < items.GetCount(); ++i)
    {
        const displayItem& item = **items.GetAt(i);
        if (!IsShown(item))
        {
            Refuse(section, profilePath,
                   "key " + KeyOf("rem_DisplayCol%.02d", i + 1) +
                       " names no column of the work file. docs/signcheck.md lists the columns.");
        }
        if (item.label.IsEmpty())
        {
            printfCharToOem("\nError CLI : col and lib mismatch!\n");
            Refuse(section, profilePath,
                   "key " + KeyOf("rem_DisplayLib%.02d", i + 1) +
                       " gives no label. Write one as ~Label.");
        }
        m_columns.push_back({CodeOf(item), item.label.SafeGetString()});
    }
    if (m_columns.empty())
    {
        Refuse(
            section, profilePath,
            "key rem_DisplayCol01 is missing or empty, so nothing would be shown. Name a column, "
            "such as $RECORD.");
    }
    const int inOneLine = file.GetDisplayHeadCount();
    m_inOneLine = inOneLine > 0 ? static_cast<std::size_t>(inOneLine) : m_columns.size();
}

std::string DisplayColumns::CodeOf(const displayItem& item) const
{
    switch (item.column)
    {
    case amounts::kOrderCount:
        return "#NbOrders";
    case amounts::kTotalCurrency:
        return "#TotalCurrency";
    default:
        break;
    }
    std::string names;
    for (int i = 0; i < item.columns.GetCount(); ++i)
    {
        names += names.empty() ? "" : " ";
        names += m_file.GetFirstHeader().GetAt(*item.columns.GetAt(i))->SafeGetString();
    }
    return names;
}

std::vector<std::string> DisplayColumns::Values(const amounts::DelimitedRow& row,
                                                const RowTotals& totals) const
{
    std::vector<std::string> values;
    const TArray<displayItem*>& items = m_file.GetDisplayItems();
    for (int i = 0; i < items.GetCount(); ++i)
    {
        const displayItem& item = **items.GetAt(i);
        values.push_back(item.columns.GetCount() > 0 ? JoinedValue(item.columns, row)
                                                     : ColumnValue(item.column, row, totals));
    }
    return values;
}

} // namespace host
