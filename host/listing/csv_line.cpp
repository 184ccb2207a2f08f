#include "host/listing/csv_line.h"

#include "support/codepage.h"
#include "support/messages.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>

namespace listing
{

namespace
{

// The last four are the wide forms of the first, which some spreadsheets take for them.
constexpr std::string_view kFormulaStarts[] = {"=",  "+",  "-",  "@",  "\t", "\r",
                                               "\n", "＝", "＋", "－", "＠"};

bool StartsFormula(std::string_view text)
{
    return std::any_of(std::begin(kFormulaStarts), std::end(kFormulaStarts),
                       [text](std::string_view start) { return text.starts_with(start); });
}

std::string Enclosed(const std::string& field)
{
    if (field.find_first_of(",\"\r\n") == std::string::npos)
    {
        return field;
    }
    std::string enclosed = "\"";
    for (const char letter : field)
    {
        enclosed.append(letter == '"' ? 2 : 1, letter);
    }
    return enclosed + '"';
}

} // namespace

std::string CsvLine(const std::vector<std::string>& fields)
{
    std::string line;
    for (std::size_t index = 0; index < fields.size(); ++index)
    {
        line += index == 0 ? "" : ",";
        line += Enclosed(fields[index]);
    }
    return line + "\r\n";
}

std::string CsvField(const nlohmann::ordered_json& value)
{
    if (value.is_string())
    {
        return GuardedFromFormulas(value.get_ref<const std::string&>());
    }
    if (value.is_number_float())
    {
        return support::Utf8FromWide(support::AmountText(value.get<double>()));
    }
    return value.is_null() ? std::string() : value.dump();
}

std::string GuardedFromFormulas(std::string_view utf8)
{
    const std::size_t first = utf8.find_first_not_of(" '");
    if (first == std::string_view::npos || !StartsFormula(utf8.substr(first)))
    {
        return std::string(utf8);
    }
    return "'" + std::string(utf8);
}

} // namespace listing
