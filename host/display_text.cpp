#include "host/display_text.h"

#include "host/output.h"
#include "host/text.h"
#include "support/codepage.h"
#include "support/format.h"

#include <algorithm>

namespace host
{

namespace
{

constexpr std::size_t kRulerWidth = 120;
constexpr std::size_t kCellWidth = 20;
constexpr const char* kCell = "%-20.20s | ";
constexpr const char* kFile = "  FILE : ";
constexpr const char* kCodes = "  CODE : ";
constexpr const char* kLabels = "  LIB  : ";
constexpr const char* kOrderNumber = "%7s  ";
constexpr const char* kNoNumber = "         "; // as wide as the three above
constexpr char kCutMark = '\x85';              // the ellipsis of Windows-1252

// What does not fit shows that something is missing: an amount must not lose a digit unseen. A
// value without a blank is a code, such as an account, and is told by its end as by its beginning.
std::string Shortened(const std::string& value)
{
    if (value.size() <= kCellWidth)
    {
        return value;
    }
    const std::size_t tail = value.find(' ') == std::string::npos ? kCellWidth / 2U : 0;
    return value.substr(0, kCellWidth - 1U - tail) + kCutMark + value.substr(value.size() - tail);
}

std::string Cell(const std::string& value)
{
    return support::FormatA(kCell, Shortened(value).c_str());
}

// Every line begins with its line feed.
void PrintLine(const std::string& narrow)
{
    Print("\n" + Printable(support::Utf8FromNarrow(narrow)));
}

std::string Ruler()
{
    return "\n" + std::string(kRulerWidth, '-');
}

void PrintTitle(const DisplayColumns& columns)
{
    Print("\n");
    PrintLine(columns.Title());
}

std::size_t EndOfLine(const DisplayColumns& columns, std::size_t begin)
{
    return std::min(begin + columns.InOneLine(), columns.Columns().size());
}

void PrintNames(const DisplayColumns& columns, std::size_t begin)
{
    std::string codes = kCodes;
    std::string labels = kLabels;
    for (std::size_t at = begin; at < EndOfLine(columns, begin); ++at)
    {
        codes += Cell(columns.Columns()[at].code);
        labels += Cell(columns.Columns()[at].label);
    }
    PrintLine(codes);
    PrintLine(labels);
}

void PrintValues(const DisplayColumns& columns, const std::vector<std::string>& values,
                 std::size_t begin, const std::string& head)
{
    std::string line = head;
    for (std::size_t at = begin; at < EndOfLine(columns, begin); ++at)
    {
        line += Cell(values[at]);
    }
    PrintLine(line);
}

} // namespace

DisplayText::DisplayText(const DisplayColumns& remittance, const DisplayColumns& order,
                         const std::string& fileShown)
    : m_remittance(remittance), m_order(order)
{
    Print(Ruler() + "\n" + kFile + Printable(fileShown) + Ruler());
}

DisplayText::~DisplayText()
{
    Print("\n");
}

void DisplayText::BeginRemittance()
{
    m_isFirstCurrency = true;
    PrintTitle(m_remittance);
}

void DisplayText::Currency(const amounts::DelimitedRow& row, const RowTotals& totals)
{
    const std::vector<std::string> values = m_remittance.Values(row, totals);
    for (std::size_t begin = 0; begin < values.size(); begin += m_remittance.InOneLine())
    {
        if (m_isFirstCurrency)
        {
            PrintNames(m_remittance, begin);
        }
        PrintValues(m_remittance, values, begin, kNoNumber);
    }
    m_isFirstCurrency = false;
}

void DisplayText::BeginOrders()
{
    PrintTitle(m_order);
    for (std::size_t begin = 0; begin < m_order.Columns().size(); begin += m_order.InOneLine())
    {
        PrintNames(m_order, begin);
    }
    Print(Ruler());
}

void DisplayText::Order(const amounts::DelimitedRow& row, std::uint64_t number)
{
    const std::vector<std::string> values = m_order.Values(row, {});
    for (std::size_t begin = 0; begin < values.size(); begin += m_order.InOneLine())
    {
        PrintValues(m_order, values, begin,
                    begin == 0 ? support::FormatA(kOrderNumber, std::to_string(number).c_str())
                               : std::string(kNoNumber));
    }
}

} // namespace host
